The image that an adapter runs can be saved and written back; what was done stands in the log.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt flash -a backup -t firmware -f saved
  page 0 write to file.
  page 1 write to file.
  page 2 write to file.
  Flash command is returned successfully.
  $ kt flash -a update -t firmware -f saved | tail -1
  Flash command is returned successfully.
  $ calls | grep -e PreData -e action=15 | cut -c1-75
  KT_Flash_PreData a=0 announcement=0300000040400600 -> 0
  KT_Flash_Bin a=0 action=15 imageType=3 page=000003000000000000000000+196608
  KT_Flash_Bin a=0 action=15 imageType=3 page=000003000100000000000000+196608
  KT_Flash_Bin a=0 action=15 imageType=3 page=404000000200010000000000+16448:
  $ HOME=$PWD kt flash --action BACKUP --type Firmware --file '~/again' | tail -1
  Flash command is returned successfully.
  $ cmp saved again && stat -c %a saved
  644
  $ kt flash -a version -t firmware -f saved
  major version:     4
  minor version:     1
  revision number:   15
  build number:      2108
  Sub Verndor ID:    1fa4
  $ kt flash -a backup -t firmware -f '$(touch ran)'
  Unable to create file '$(touch ran)'.
  [1]
  $ ls ran 2> /dev/null
  [2]
  $ printf 'what\nyes\n' | kt flash -a erase -t autoload
  Do you want to erase ROM file in Flash?  (y or n)
  Please input y or n.
  Erase bios command is returned successfully.
  $ kt event | grep Desc
  Description:  Backup image succeeded
  Description:  Update image succeeded
  Description:  Backup image succeeded
  Description:  Adapter 0 with serial number KS260100004711 is detected
