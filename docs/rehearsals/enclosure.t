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
