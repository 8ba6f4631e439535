One member lost, without a spare
================================

Without automatic rebuild nothing happens after a failure:

  $ cli ctrl -a mod -i 0 -s autorebuild=disable
  $ q5sim fail-drive 0 4
  drive 4 of controller 0 failed; logical drive 1 System is critical

Replace the drive and start the rebuild onto its only extent:

  $ q5sim replace-drive 0 4
  drive 4 of controller 0 replaced by an empty one
  $ cli rb -a start -l 1 -i 0 -p 4 -e 0
  Rebuild is started on Array 1.
  $ q5sim advance --until-idle
  59 seconds have passed
  controller 0: logical drive 1 System: rebuild ended
  controller 0: logical drive 1 System is online
