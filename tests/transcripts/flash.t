The image that an adapter runs can be saved and written back; what was done stands in the log.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ for action in backup update; do kt flash -a $action -t firmware -f saved | tail -1; done
  Flash command is returned successfully.
  Flash command is returned successfully.
  $ HOME=$PWD kt flash --action BACKUP --type Firmware --file '~/again' | tail -1
  Flash command is returned successfully.
  $ cmp saved again
  $ kt flash -a version -t firmware -f saved | grep build
  build number:      2108
  $ kt flash -a backup -t firmware -f '$(touch ran)'
  Unable to create file '$(touch ran)'.
  [1]
  $ echo yes | kt flash -a erase -t autoload | tail -1
  Erase bios command is returned successfully.
  $ kt event | grep Desc
  Description:  Backup image succeeded
  Description:  Update image succeeded
  Description:  Backup image succeeded
  Description:  Adapter 0 with serial number KS260100004711 is detected
