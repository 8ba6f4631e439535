A dying battery
===============

  $ cli logdrv -v -l 0 | grep Driver.Cache
  Driver Cache Mode: Write Back
  $ q5sim battery 0 failed
  battery of controller 0: failed; logical drive 0 Archive: write cache is write-through without a battery; logical drive 1 System: write cache is write-through without a battery
  $ cli logdrv -v -l 0 | grep Driver.Cache
  Driver Cache Mode: Write Thru

A new battery is charging. Write-back is in effect again:

  $ q5sim battery 0 charging
  battery of controller 0: charging; logical drive 0 Archive: write cache is write-back again; logical drive 1 System: write cache is write-back again
  $ q5sim advance 14400
  14400 seconds have passed
  controller 0: battery is fully charged
