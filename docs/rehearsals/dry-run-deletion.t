Dry-run a deletion
==================

Before a logical drive is deleted, try it on a copy of the adapters:

  $ cli-try logdrv -a del -l 0 -i 0
  On a copy of the adapters:
  
  Exit status: 0
  
  What would change:
    critical: logical drive 0 Archive of controller 0: is missing; it was RAID5 of 400000 MB
  
  What the adapters would log:
    controller 0: Logical drive 0 deleted
  
  What would be started, and its time in the model:
    nothing
  
  Data that would be lost:
    controller 0: logical drive 0 Archive, 400,000 MB, would be deleted
  
  None of this has been done on the real adapters.
  [1]

The exit status says that data would be lost. The logical drive is still there:

  $ cli logdrv | grep Archive
   0   RAID5     3      64  400000.00         (1,2,3) Archive

A whole plan can be tried as well. This one turns "System" into a RAID5 of three drives and then frees the
spare:

  $ cat >plan <<END
  > migrate -a start -l 1 -i 0 -p 7 -e 0 -s raid=raid5
  > extent -a free -p 6 -e 0 -i 0
  > END
  $ cli-try -f plan >report
  $ sed -n '/^What would be started/,$p' report
  What would be started, and its time in the model:
    controller 0: logical drive 1 System: migration, 59 seconds
  
  What would be at risk:
    controller 0: drive 6, extent 0 would no longer be a spare
  
  Data that would be lost:
    none
  
  None of this has been done on the real adapters.

A command that is refused has no effect, on the copy as on the adapters:

  $ cli-try logdrv -a del -l 7 -i 0 >report
  [2]
