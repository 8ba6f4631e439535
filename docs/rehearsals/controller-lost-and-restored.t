Losing a controller and restoring it
====================================

Save the configuration and the state of all controllers. A second backup is made only when something has
changed:

  $ mkdir backups
  $ cli-backup -d backups
  warning: logical drive 0 Scratch of controller 1: set to write back, but the controller has no battery
  saved as backups/*.cfg (glob)
  $ cli-backup -d backups
  unchanged since backups/*.cfg (glob)
  $ backup=$(ls backups/*.cfg)

Controller 0 fails, and drive 5 with it. The new controller finds Archive on the drives, but System no longer,
and has default settings:

  $ q5sim swap-controller 0
  controller 0 replaced
  $ cli logdrv -a del -l 1 -i 0
  $ q5sim fail-drive 0 5
  drive 5 of controller 0 failed
  $ q5sim replace-drive 0 5
  drive 5 of controller 0 replaced by an empty one
  $ cli logdrv -i 0
  ID    RAID Disks Sectors   Size(MB)          DiskID Name
   0   RAID5     3      64  400000.00         (1,2,3) Archive

What has to be done? The serial number of the new drive is not that of the old one:

  $ cli-restore-rehearse -i 0 $backup
  1. set controller 0: auto rebuild enable
  prevented: drive 5 has another serial: TQ5A0041772R0 instead of TQ5A0041772; if it is the replacement, add --drives 5=5
  note: drive 5 is another drive; its settings stay
  [4]

It is the replacement. The plan is then also tried on a copy; nothing has been changed yet:

  $ cli-restore-rehearse -i 0 --drives 5=5 $backup
  1. create logical drive 1 System: RAID1 of 122880000 sectors on drive 4 extent 0 (122880000 sectors from 0), drive 5 extent 0 (122880000 sectors from 0)
  2. set logical drive 1: writepolicy=writeback,lookahead=4,consolidation=enable (unless it is created with them)
  3. set controller 0: auto rebuild enable
  On a copy of these adapters:
  1. create logical drive 1 System: RAID1 of 122880000 sectors on drive 4 extent 0 (122880000 sectors from 0), drive 5 extent 0 (122880000 sectors from 0)
  2. set controller 0: auto rebuild enable
  Controller 0 is as it was saved.
  [1]
  $ cli logdrv -i 0 | grep -c System
  0
  [1]

Creating a logical drive may make the data on its members unreadable. What drive 4 still held has been copied
first. Apply the plan; the second step is not necessary, as on the copy:

  $ cli-restore-rehearse -i 0 --drives 5=5 --apply $backup
  1. create logical drive 1 System: RAID1 of 122880000 sectors on drive 4 extent 0 (122880000 sectors from 0), drive 5 extent 0 (122880000 sectors from 0)
  2. set controller 0: auto rebuild enable
  Controller 0 is as it was saved.
  $ cli logdrv -i 0
  ID    RAID Disks Sectors   Size(MB)          DiskID Name
   0   RAID5     3      64  400000.00         (1,2,3) Archive
   1   RAID1     2      64   60000.00           (4,5) System
  $ cli-restore-rehearse -i 0 --drives 5=5 $backup
  There is nothing to do.

The next backup has the new drive:

  $ cli-backup -d backups
  info: synchronization of logical drive 1 System of controller 0 started
  info: drive 5 of controller 0: was replaced; serial TQ5A0041772 is now TQ5A0041772R0
  saved as backups/*.cfg (glob)
