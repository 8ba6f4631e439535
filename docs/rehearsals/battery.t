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

Without a battery, the setting and what is in effect differ. The exit status 5 shows that there is none:

  $ q5sim battery 0 missing | tr ';' '\n' | head -n 1
  battery of controller 0: missing
  $ cli battery
  No battery exists in controller with ID 0!
  [5]
  $ cli logdrv -v -l 0 | grep Driver.Cache
  Driver Cache Mode: Write Thru
  $ cli-status -q -i 0
  warning: logical drive 0 Archive of controller 0: set to write back, but the controller has no battery
  warning: logical drive 1 System of controller 0: set to write back, but the controller has no battery
  [1]

To keep it that way, change the setting:

  $ cli logdrv -a mod -l 0 -i 0 -s writepolicy=writethru
  $ cli logdrv -a mod -l 1 -i 0 -s writepolicy=writethru
  $ cli-status -q -i 0; echo "exit status $?"
  exit status 0
