The image that an adapter runs can be saved and written back.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt flash -a backup -t firmware -f saved
  page 0 write to file.
  page 1 write to file.
  page 2 write to file.
  Flash command is returned successfully.
  $ calls | grep Flash | cut -c1-75
  KT_Flash_Bin a=0 action=240 imageType=3 -> 0
  KT_Flash_Bin a=0 action=240 imageType=3 -> 0
  KT_Flash_Bin a=0 action=240 imageType=3 -> 0
  $ kt flash -a update -t firmware -f saved
  page 0 write to device.
  page 1 write to device.
  page 2 write to device.
  Flash command is returned successfully.
  $ calls | grep Flash | cut -c1-75
  KT_Flash_PreData a=0 announcement=0300000040400600 -> 0
  KT_Flash_Bin a=0 action=15 imageType=3 page=000003000000000000000000+196608
  KT_Flash_Bin a=0 action=15 imageType=3 page=000003000100000000000000+196608
  KT_Flash_Bin a=0 action=15 imageType=3 page=404000000200010000000000+16448:
  $ HOME=$PWD kt flash --action BACKUP --type Firmware --file '~/again'
  page 0 write to file.
  page 1 write to file.
  page 2 write to file.
  Flash command is returned successfully.
  $ cmp saved again && stat -c %a saved
  644
  $ kt flash -a version -t firmware -f saved
  major version:     4
  minor version:     1
  revision number:   15
  build number:      2108
  Sub Verndor ID:    1fa4
  $ kt flash -a version -t bios -f saved
  
  Image type sepecified by '-t' is not the same as type get from file. type from '-t': 2, type from file: 3

A backup never takes the place of something.

  $ kt flash -a backup -t firmware -f saved
  File 'saved' has already existed.
  [1]
  $ ln -s nowhere link
  $ kt flash -a backup -t firmware -f link
  File 'link' has already existed.
  [1]
  $ kt flash -a backup -t firmware -f nowhere/file
  Unable to create file 'nowhere/file'.
  [1]
  $ kt flash -a backup -t firmware -f '$(touch ran)'
  Unable to create file '$(touch ran)'.
  [1]
  $ kt flash -a update -t firmware -f '`touch ran`'
  Unable to open file '`touch ran`'.
  [1]
  $ test -e ran
  [1]

An adapter that fails gives its reason, and no file stays. Erased is what people agree to erase.

  $ ktsim fault KT_Flash_Bin 20 --times 1
  $ kt flash -a backup -t bios -f fresh
  
  Failed to flash (error 20: Link time out).
  [20]
  $ test -e fresh
  [1]
  $ printf 'what\nyes\n' | kt flash -a erase -t autoload
  Do you want to erase ROM file in Flash?  (y or n)
  Please input y or n.
  Erase bios command is returned successfully.
  $ kt flash -a erase -p pdforce
  Erase PD Page command is returned successfully.
  $ calls | grep Flash | cut -c1-90 | tail -2
  KT_Flash_Bin a=0 action=1 imageType=4 page=000003000000000000000000+196608:b66b2fcb -> 0
  KT_Flash_Erase a=0 pageCode=254 -> 0

What was done stands in the log.

  $ kt event | grep Desc
  Description:  Backup image succeeded
  Description:  Update image succeeded
  Description:  Backup image succeeded
  Description:  Adapter 0 with serial number KS260100004711 is detected
