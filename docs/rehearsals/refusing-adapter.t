An adapter that refuses
=======================

  $ q5sim refuse 'q5_start*' --times 1
  rule 1: refuse q5_start* --times 1
  $ cli rc -a start -l 0 -i 0
  Redundancy check failed to start on Array 0!
  [8]
  $ q5sim why
  refused by rule 1 (q5_startRedundancyCheck)

The rule applies once; the second attempt succeeds:

  $ cli rc -a start -l 0 -i 0
  Redundancy check started on Array 0!
  $ q5sim rules
  1: refuse q5_start* --times 1 (2 calls, 1 hits)
  $ q5sim clear-rules
  1 rule cleared

An adapter that does not start:

  $ q5sim refuse q5_initialize
  rule 1: refuse q5_initialize
  $ cli ctrl
  Q5API is failed to initialized!
  [10]
