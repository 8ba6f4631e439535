Wait for a rebuild
==================

A drive of the RAID5 fails, and the global spare replaces it:

  $ q5sim fail-drive 0 2
  drive 2 of controller 0 failed; logical drive 0 Archive is critical; rebuild onto drive 6 started

Check the progress. Without waiting, the status is 3 while something runs:

  $ cli-wait -l 0 --timeout 0
  rebuild of logical drive 0 Archive of controller 0: 0%
  cli-wait: timed out after 0 seconds
  [3]

In a script, wait and use the status. Here the wait runs in the background, so that the clock of the model can
be advanced meanwhile:

  $ cli-wait -l 0 --every 0.1 >waited & waiting=$!
  $ until [ -s waited ]; do sleep 0.1; done
  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online
  $ wait $waiting && cat waited
  rebuild of logical drive 0 Archive of controller 0: 0%
  rebuild of logical drive 0 Archive of controller 0 has ended
  logical drive 0 Archive of controller 0 is online

A paused activity would never end by itself. The wait ends instead and says so:

  $ cli rc -a start -l 1 -i 0
  Redundancy check started on Array 1!
  $ cli rc -a pause -l 1 -i 0
  Redundancy check paused on Array 1.
  $ cli-wait -l 1
  redundancy check of logical drive 1 System of controller 0 is paused at 0%
  only paused activities are left
  [4]

A rebuild that is aborted leaves the logical drive as it was. The status is 1:

  $ q5sim replace-drive 0 2
  drive 2 of controller 0 replaced by an empty one
  $ cli extent -a spare -p 2 -e 0 -i 0
  $ q5sim fail-drive 0 3
  drive 3 of controller 0 failed; logical drive 0 Archive is critical; rebuild onto drive 2 started
  $ cli-wait -l 0 --for rb --every 0.1 >waited & waiting=$!
  $ until [ -s waited ]; do sleep 0.1; done
  $ cli rb -a abort -l 0 -i 0
  Rebuild aborted on Array 0.
  $ wait $waiting
  [1]
  $ tail -n 1 waited
  logical drive 0 Archive of controller 0 is critical
