Losing a controller and a member
================================

There is a backup of the time when all was well:

  $ mkdir backups
  $ cli-backup -d backups
  warning: logical drive 0 Scratch of controller 1: set to write back, but the controller has no battery
  saved as backups/*.cfg (glob)
  $ backup=$(ls backups/*.cfg)

Controller 0 fails, and drive 3 with it. The new controller finds the logical drives, but has default settings:
the spare is there and is not used. Drive 3 is replaced:

  $ q5sim swap-controller 0
  controller 0 replaced
  $ q5sim fail-drive 0 3 | sed 's/;.*//'
  drive 3 of controller 0 failed
  $ q5sim replace-drive 0 3
  drive 3 of controller 0 replaced by an empty one

Restore the settings. Enabling the automatic rebuild starts it, so that this is always the last step:

  $ cli-restore-rehearse -i 0 --drives 3=3 --apply $backup
  1. set controller 0: auto rebuild enable
  A rebuild of logical drive 0 Archive onto drive 6 was started.
  note: logical drive 0 Archive has lost a member since; a rebuild makes it complete
  note: the spare on drive 6 is in use: logical drive 0 Archive is being rebuilt onto it
  Controller 0 is not as it was saved: logical drive 0 Archive is critical and is being rebuilt onto drive 6.
  $ q5sim advance --until-idle
  196 seconds have passed
  controller 0: logical drive 0 Archive: rebuild ended
  controller 0: logical drive 0 Archive is online

Drives 3 and 6 have changed places. Drive 3 becomes the spare:

  $ cli-restore-rehearse -i 0 --drives 3=6,6=3 --apply $backup | grep -v '^note: '
  1. make extent 0 of drive 3 a global spare
  Controller 0 is as it was saved.

The next backup has it so:

  $ cli-backup -d backups | tail -1
  saved as backups/*.cfg (glob)
