A stale drive returns
=====================

A drive drops out of the RAID5 and is inserted again. In between the host has written:

  $ cli ctrl -a mod -i 0 -s autorebuild=disable
  $ q5sim pull-drive 0 3
  drive 3 of controller 0 removed; logical drive 0 Archive is critical
  $ q5sim insert-drive 0 3
  drive 3 of controller 0 inserted again; drive 3: its data of logical drive 0 is stale

Its extent is there, but the member counts as lost:

  $ cli logdrv -v -l 0 | grep -E 'down|functional'
  Set down disk members with ID in array : 2
  Array functional status : Critical

Rebuild it in place:

  $ cli rb -a start -l 0 -i 0 -p 3 -e 0
  Rebuild is started on Array 0.
  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online
