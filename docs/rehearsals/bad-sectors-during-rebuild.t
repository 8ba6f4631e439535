Bad sectors during a rebuild
============================

One drive of the mirror has ten undetected bad sectors. The other drive fails:

  $ q5sim media-errors 0 5 10 --at 2
  drive 5 of controller 0 has 10 more bad sectors at 2 percent
  $ q5sim fail-drive 0 4
  drive 4 of controller 0 failed; logical drive 1 System is critical; rebuild onto drive 6 started

The rebuild reads the last copy. It continues, but one stripe is lost:

  $ q5sim advance --until-idle
  59 seconds have passed
  controller 0: logical drive 1 System: 1 stripe lost, unreadable on drive 5
  controller 0: logical drive 1 System: rebuild ended
  controller 0: logical drive 1 System is online

A regular media patrol would have found and repaired the sectors while both drives worked:

  $ q5sim reset
  world replaced by the built-in one
  $ q5sim media-errors 0 5 10 --at 2
  drive 5 of controller 0 has 10 more bad sectors at 2 percent
  $ cli mp -a start -p 5 -i 0
  $ q5sim advance --until-idle
  466 seconds have passed
  controller 0: drive 5: media patrol ended, 10 errors
  controller 0: drive 5: 10 unreadable sectors repaired
