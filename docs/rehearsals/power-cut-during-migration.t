A power cut during a migration
==============================

  $ cli migrate -a start -l 0 -i 0 -p 7 -e 0 -s raid=raid5
  Migration is started on Array 0.
  $ q5sim advance 98
  98 seconds have passed
  $ q5sim power-cut
  power was cut and is back
  controller 0: controller restarted after a power cut
  controller 0: logical drive 0 Archive: migration resumed at 50 percent
  controller 0: logical drive 1 System: synchronization started
  controller 1: controller restarted after a power cut
  controller 1: logical drive 0 Scratch: cached writes lost
  controller 1: logical drive 0 Scratch: synchronization started

Controller 1 has no battery. A redundancy check finds what the cache has lost:

  $ q5sim advance --until-idle
  118 seconds have passed
  controller 0: logical drive 1 System: synchronization ended
  controller 0: logical drive 0 Archive: migration ended
  controller 1: logical drive 0 Scratch: synchronization ended
  $ cli rc -a start -l 0 -i 1
  Redundancy check started on Array 0!
  $ q5sim advance --until-idle
  118 seconds have passed
  controller 1: logical drive 0 Scratch: redundancy check ended
  controller 1: logical drive 0 Scratch: redundancy check found 8 inconsistencies, repaired
