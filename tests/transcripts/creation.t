Arrays and virtual disks on the simulated adapters: made and refused.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json <<'END'
  > {"adapters": [{"type": "LD-based", "disks": [
  >   {"count": 4, "type": "SATA", "size": "1TB"}, {"count": 2, "type": "SATA", "size": "1TB", "mbr": true},
  >   {"type": "SATA", "size": "1TB", "spare": "global"}, {"type": "SATA", "size": "1TB", "state": "offline"},
  >   {"type": "SATA", "size": "1TB", "state": "foreign"}]}]}
  > END
  $ lab lab.json; kt maxcreatesize -r 5 -d 0,1,2
  
  The maxsize that VD can create with is:   1953394048 K
  $ kt create -r 1 -d 0,1 -n "My VD" -s 5000 -i none --forcesize -c off -p ra -b 128
  $ kt create -r 0 -d 3,2,3 -s 5000 -i none
  $ kt info -o vd | grep -e ^name -e 'Stripe size' -e ^size -e setup | paste -d'|' - - - -
  name:                My VD|Stripe size:         128|size:                5000 M|PD RAID setup:       0 1 
  name:                VD_R0_2|Stripe size:         64|size:                1907611 M|PD RAID setup:       3 2 
  $ calls | grep -c KT_LD_Create
  2

From the first disk to a full array.

  $ lab empty; kt create -o array -r 10 -d 0,1,2,3 --sizeonly
  
  Arry of size 0x0003a37a2 M can be created by the given parameters
  $ kt create -o array -r 10 -d 0,1,2,3 -b 32 -i background
  Create array 0 successfully.
  $ kt create -o array -r 1 -d 4,5 -n "sixteen letters_" --cacheoff; kt get -o array | grep cache
  Create array 1 successfully.
  write cache:             on
  write cache:             off
  $ for words in "-s 5000 -g 1 -p ra -i none" "-s 99999999" "-n rest" ""; do kt create -a 0 $words; done | grep . | joined
  Create VD 0 successfully. | No resources. Max available size is 3810330 M | Create VD 1 successfully. | No resources. Max available size is 0 M
  $ kt info -o vd | grep -e ^id -e ^name -e ^size | paste -d'|' - - -
  id:                  0|name:                VD_R10_1|size:                5000 M
  id:                  1|name:                rest|size:                3810330 M
