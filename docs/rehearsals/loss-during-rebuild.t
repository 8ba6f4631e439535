A second loss during the rebuild
================================

  $ q5sim fail-drive 0 2
  drive 2 of controller 0 failed; logical drive 0 Archive is critical; rebuild onto drive 6 started
  $ q5sim advance 60
  60 seconds have passed
  $ q5sim fail-drive 0 3
  drive 3 of controller 0 failed; logical drive 0 Archive: rebuild aborted; logical drive 0 Archive is offline
  $ cli logdrv -v -l 0 | grep status
  Array activity status : Idle
  Array functional status : Offline

The data is lost. Replaced drives do not bring it back:

  $ q5sim replace-drive 0 2
  drive 2 of controller 0 replaced by an empty one
  $ cli rb -a start -l 0 -i 0 -p 2 -e 0
  Rebuild is failed to start on Array 0.
  [8]
  $ q5sim why
  rebuild of logical drive 0: it is offline (q5_startHBARebuildExtent)
