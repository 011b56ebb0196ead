The image that an adapter runs can be saved and written back.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ for action in backup update; do kt flash -a $action -t firmware -f saved | tail -1; done
  Flash command is returned successfully.
  Flash command is returned successfully.
  $ HOME=$PWD kt flash --action BACKUP --type Firmware --file '~/again' | tail -1
  Flash command is returned successfully.
  $ cmp saved again
  $ kt flash -a backup -t firmware -f '$(touch ran)'
  Unable to create file '$(touch ran)'.
  [1]
