// The finders of the rule table, by the source that holds them.
#pragma once

#include "tools/status/rules.h"

// rules_arrays.cpp
void findOfflineArrays(Evaluation* evaluation);
void findCriticalArrays(Evaluation* evaluation);
void findDegradedArrays(Evaluation* evaluation);
void findRunningActivities(Evaluation* evaluation);
void findPausedActivities(Evaluation* evaluation);
void findUnprotectedWriteBack(Evaluation* evaluation);

// rules_members.cpp
void findLostMembers(Evaluation* evaluation);
void findMissingReplacements(Evaluation* evaluation);
void findArraysWithoutSpare(Evaluation* evaluation);

// rules_drives.cpp
void findSmartFailures(Evaluation* evaluation);
void findPatrolErrors(Evaluation* evaluation);
void findInaccessibleDrives(Evaluation* evaluation);
void findInaccessibleSpares(Evaluation* evaluation);
void findInaccessibleUnused(Evaluation* evaluation);

// rules_environment.cpp
void findFailedBatteries(Evaluation* evaluation);
void findDischargingBatteries(Evaluation* evaluation);
void findReconditioningBatteries(Evaluation* evaluation);
void findWarmBatteries(Evaluation* evaluation);
void findHotBatteries(Evaluation* evaluation);
void findStoppedFans(Evaluation* evaluation);
void findWarmEnclosures(Evaluation* evaluation);
void findHotEnclosures(Evaluation* evaluation);
void findVoltagesOff(Evaluation* evaluation);
void findVoltagesFarOff(Evaluation* evaluation);

// rules_host.cpp
void findUnreadableObjects(Evaluation* evaluation);
void findNoController(Evaluation* evaluation);
void findUnreadableDetails(Evaluation* evaluation);
void findFirmwareDifferences(Evaluation* evaluation);
void findDriverDifferences(Evaluation* evaluation);
void findDriveCountDifferences(Evaluation* evaluation);
void findArrayCountDifferences(Evaluation* evaluation);

// rules_baseline.cpp
void findMissingControllers(Evaluation* evaluation);
void findNewControllers(Evaluation* evaluation);
void findMissingFormerControllers(Evaluation* evaluation);
void findRenumberedControllers(Evaluation* evaluation);
void findMissingArrays(Evaluation* evaluation);
void findNewArrays(Evaluation* evaluation);
void findChangedArrays(Evaluation* evaluation);
void findMovedArrays(Evaluation* evaluation);
void findMissingEnclosures(Evaluation* evaluation);
void findNewEnclosures(Evaluation* evaluation);
void findReplacedEnclosures(Evaluation* evaluation);
void findMissingSensors(Evaluation* evaluation);
void findMissingBatteries(Evaluation* evaluation);
void findNewBatteries(Evaluation* evaluation);

// rules_baseline_drives.cpp
void findMissingDrives(Evaluation* evaluation);
void findNewDrives(Evaluation* evaluation);
void findReplacedDrives(Evaluation* evaluation);
void findMovedDrives(Evaluation* evaluation);
void findMissingSpares(Evaluation* evaluation);
void findNewSpares(Evaluation* evaluation);
void findMovedSpares(Evaluation* evaluation);

// rules_baseline_unchecked.cpp
void findUncheckedObjects(Evaluation* evaluation);
