Which drive to pull
===================

A drive of the RAID5 fails:

  $ cli ctrl -a mod -i 0 -s autorebuild=disable
  $ q5sim fail-drive 0 2
  drive 2 of controller 0 failed; logical drive 0 Archive is critical

One line of cli numbers lost drives from 0. Add 1: drive 2 is lost.

  $ cli logdrv -v -l 0 -i 0 | grep members
  Disk members with ID in array : (1,2,3)
  Set down disk members with ID in array : 1

Note its serial number, and confirm the drive with its light:

  $ cli phydrv -p 2 -i 0
  ID CH         Size                  Model                Serial        F/W
   2  1  476940.02MB           TQ500-7200AS           TQ5A0041733     TQ3.02
  $ cli phydrv -a locate -p 2 -i 0 -d 60
  $ cli phydrv -p 2 -i 0 -v | grep Locate
  Current Locate Status : On
  $ cli phydrv -a locate -p 2 -i 0 -d 0
  $ cli phydrv -p 2 -i 0 -v | grep Locate
  Current Locate Status : Off

Pulling drive 1 instead would lose the data:

  $ q5sim pull-drive 0 1
  drive 1 of controller 0 removed; logical drive 0 Archive is offline

Nothing was written after that. Back in its slot, it still has the current data:

  $ q5sim insert-drive 0 1
  drive 1 of controller 0 inserted again; logical drive 0 Archive is critical
