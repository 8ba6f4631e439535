A SMART warning and a planned replacement
=========================================

  $ q5sim smart-fail 0 1
  drive 1 of controller 0 reports a SMART failure
  $ cli event -c 1 -v | grep Drive
  Event Desciption: Drive 1: SMART predicts a failure

Check the redundancy before the drive is pulled:

  $ cli rc -a start -l 0 -i 0
  Redundancy check started on Array 0!
  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: redundancy check ended
  controller 0: logical drive 0 Archive: redundancy check found 0 inconsistencies

Pull it; the spare replaces it. The new drive becomes the next spare:

  $ q5sim pull-drive 0 1
  drive 1 of controller 0 removed; logical drive 0 Archive is critical; rebuild onto drive 6 started
  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online
  $ q5sim insert-drive 0 1 --blank
  drive 1 of controller 0 inserted, empty
  $ cli extent -a spare -p 1 -e 0 -i 0
