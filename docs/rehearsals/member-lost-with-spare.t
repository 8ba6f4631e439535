One member lost, with a spare
=============================

A drive of the RAID5 fails. Automatic rebuild is on, so the global spare replaces it immediately:

  $ q5sim fail-drive 0 2
  drive 2 of controller 0 failed; logical drive 0 Archive is critical; rebuild onto drive 6 started
  $ cli logdrv -v -l 0 | grep status
  Array activity status : Rebuilding
  Array functional status : Critical

Until the rebuild ends, another failure loses the data:

  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online

Replace the failed drive, and make the new one the next spare:

  $ q5sim replace-drive 0 2
  drive 2 of controller 0 replaced by an empty one
  $ cli extent -a spare -p 2 -e 0 -i 0
  $ cli event -c 1 -v | grep Drive
  Event Desciption: Drive 2: extent 0 is a global spare
