A replaced controller
=====================

Save the settings while the old controller works:

  $ cli export -t 0 -f saved.cfg >saved.log

The new controller finds the logical drives on the drives, but has default settings:

  $ q5sim swap-controller 0
  controller 0 replaced
  $ cli logdrv -v -l 0 | grep functional
  Array functional status : Online
  $ cli ctrl -v | grep 'Auto rebuild' | head -1
  Auto rebuild : Disable

Restore them, and the automatic rebuild with them:

  $ cli import -k "0 1" -f saved.cfg >restored.log
  $ cli ctrl -v | grep 'Auto rebuild' | head -1
  Auto rebuild : Enable
