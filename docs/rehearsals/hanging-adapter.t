An adapter that does not answer
===============================

One command hangs. It is interrupted; without timeout, press control-C:

  $ q5sim hang 'q5_start*'
  rule 1: hang q5_start*
  $ timeout 1 cli rc -a start -l 0 -i 0
  [124]
  $ timeout -s INT 1 cli rc -a start -l 0 -i 0
  [124]

The adapter still answers, and the check has not been started:

  $ cli logdrv -v -l 0 -i 0 | grep status
  Array activity status : Idle
  Array functional status : Online
  $ cli-status -q -i 0
  $ q5sim rules
  1: hang q5_start* (2 calls, 2 hits)

It recovers:

  $ q5sim clear-rules
  1 rule cleared
  $ cli rc -a start -l 0 -i 0
  Redundancy check started on Array 0!

Later it does not answer at all, and every command waits until it is interrupted:

  $ q5sim hang 'q5_*'
  rule 1: hang q5_*
  $ timeout 1 cli ctrl
  [124]
  $ timeout 1 cli-status -q
  [124]

After the power was off and on, the configuration is as it was, and the adapter synchronizes by itself:

  $ q5sim clear-rules
  1 rule cleared
  $ q5sim power-cut | grep 'controller 0'
  controller 0: controller restarted after a power cut
  controller 0: logical drive 0 Archive: redundancy check aborted
  controller 0: logical drive 0 Archive: synchronization started
  controller 0: logical drive 1 System: synchronization started
  $ cli logdrv -i 0
  ID    RAID Disks Sectors   Size(MB)          DiskID Name
   0   RAID5     3      64  400000.00         (1,2,3) Archive
   1   RAID1     2      64   60000.00           (4,5) System
  $ q5sim advance --until-idle >/dev/null
  $ cli-status -q -i 0; echo "exit status $?"
  exit status 0
