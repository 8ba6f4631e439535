// The help texts: the short ones, and the long ones of which CLICMD_HELP_HELP is the main help.
#pragma once

extern const char CLICMD_SHORT_BATTERY[];
extern const char CLICMD_SHORT_BGA[];
extern const char CLICMD_SHORT_BUZZ[];
extern const char CLICMD_SHORT_CTRL[];
extern const char CLICMD_SHORT_ENCLOSURE[];
extern const char CLICMD_SHORT_EVENT[];
extern const char CLICMD_SHORT_EXIT[];
extern const char CLICMD_SHORT_EXPORT[];
extern const char CLICMD_SHORT_EXTENT[];
extern const char CLICMD_SHORT_HELP[];
extern const char CLICMD_SHORT_IMPORT[];
extern const char CLICMD_SHORT_INIT[];
extern const char CLICMD_SHORT_LOGDRV[];
extern const char CLICMD_SHORT_MIGRATE[];
extern const char CLICMD_SHORT_MP[];
extern const char CLICMD_SHORT_PHYDRV[];
extern const char CLICMD_SHORT_RB[];
extern const char CLICMD_SHORT_RC[];
extern const char CLICMD_SHORT_SYNC[];

extern const char CLICMD_HELP_BATTERY[];
extern const char CLICMD_HELP_BGA[];
extern const char CLICMD_HELP_BUZZER[];
extern const char CLICMD_HELP_CONTROLLER[];
extern const char CLICMD_HELP_ENCLOSURE[];
extern const char CLICMD_HELP_EVENT[];
extern const char CLICMD_HELP_EXPORT[];
extern const char CLICMD_HELP_EXTENT[];
extern const char CLICMD_HELP_HELP[];
extern const char CLICMD_HELP_IMPORT[];
extern const char CLICMD_HELP_LDINIT[];
extern const char CLICMD_HELP_LDSYNCH[];
extern const char CLICMD_HELP_LOGDRIVE[];
extern const char CLICMD_HELP_MEDIAPATROL[];
extern const char CLICMD_HELP_MIGRATION[];
extern const char CLICMD_HELP_PHYDRIVE[];
extern const char CLICMD_HELP_REBUILD[];
extern const char CLICMD_HELP_REDUNDANCY_CHECK[];
