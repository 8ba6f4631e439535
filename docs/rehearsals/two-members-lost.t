Two members lost
================

Two drives of the RAID5 drop out, one after the other:

  $ cli ctrl -a mod -i 0 -s autorebuild=disable
  $ q5sim pull-drive 0 1
  drive 1 of controller 0 removed; logical drive 0 Archive is critical
  $ q5sim pull-drive 0 2
  drive 2 of controller 0 removed; logical drive 0 Archive is offline

Nothing was written after the second one had left. When it returns, the logical drive is as it was:

  $ q5sim insert-drive 0 2
  drive 2 of controller 0 inserted again; logical drive 0 Archive is critical

The first one missed writes in between and must be rebuilt:

  $ q5sim insert-drive 0 1
  drive 1 of controller 0 inserted again; drive 1: its data of logical drive 0 is stale
  $ cli rb -a start -l 0 -i 0 -p 1 -e 0
  Rebuild is started on Array 0.
  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online
