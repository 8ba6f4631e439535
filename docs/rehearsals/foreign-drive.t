A drive from another system
===========================

The replacement for drive 7 was used in another system:

  $ q5sim pull-drive 0 7
  drive 7 of controller 0 removed
  $ q5sim insert-drive 0 7 --foreign
  drive 7 of controller 0 inserted, with a foreign configuration

An extent belongs to array 2, which does not exist here. It cannot become a spare. The message counts drives from 0:

  $ cli extent -p 7 -i 0
  DiskID Index AryID Size     StartLBA
       7     0     2 238470.00     0.00
       7     1    -1 238470.02 238470.00
  $ cli extent -a spare -p 7 -e 0 -i 0
  Failed to spare an extent #0 in disk with ID 6 on controller #0!

Its data is not needed. Wipe the drive, merge its free extents, and make it a spare:

  $ cli phydrv -a wipe -p 7 -i 0
  $ cli extent -a delete -p 7 -e 1 -i 0
  $ cli extent -p 7 -i 0
  DiskID Index AryID Size     StartLBA
       7     0    -1 476940.02     0.00
  $ cli extent -a spare -p 7 -e 0 -i 0
  $ cli extent -p 7 -i 0 -v | grep Assignment
  Assignment status : global spare
