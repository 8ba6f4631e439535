A pulled enclosure
==================

All drives of the enclosure disappear at the same time, so nothing is written to only some of them:

  $ q5sim pull-enclosure 0 0 | tr ';' '\n' | grep logical
   logical drive 0 Archive is offline
   logical drive 1 System is offline
  $ cli phydrv -i 0
  Disk with ID 0 in controller #0 is not existed
  [5]

Nothing is stale when it returns:

  $ q5sim insert-enclosure 0 0 | tr ';' '\n' | grep logical
   logical drive 0 Archive is online
   logical drive 1 System is online
  $ q5sim status --check
  the world is consistent

A fan has stopped:

  $ q5sim sensor 0 0 fan 0
  fan sensor of enclosure 0 of controller 0 set to 0; enclosure 0: fan 0 is out of range
  $ cli-status -q -i 0
  critical: enclosure 0 of controller 0: fan 1 has stopped (0 rpm)
  [2]
  $ cli enclosure -e 0 -i 0 | grep -o 'Fan speed #1 : [0-9]*'
  Fan speed #1 : 0
