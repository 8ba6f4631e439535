A paused rebuild
================

  $ q5sim fail-drive 0 2
  drive 2 of controller 0 failed; logical drive 0 Archive is critical; rebuild onto drive 6 started
  $ q5sim advance 60
  60 seconds have passed
  $ cli rb -a pause -l 0 -i 0
  Rebuild paused on Array 0.

Hours later nothing has changed, and the logical drive has no redundancy:

  $ q5sim advance 36000
  36000 seconds have passed
  $ cli logdrv -v -l 0 -i 0 | grep -E 'activity|progress|functional'
  Array activity status : Rebuild Paused
  Array rebuilding progress : 30 %
  Array functional status : Critical

Resume it, at full speed:

  $ cli rb -a resume -l 0 -i 0
  Rebuild resumed on Array 0.
  $ cli ctrl -a mod -i 0 -s rebuildrate=255
  $ q5sim advance --until-idle
  68 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online
