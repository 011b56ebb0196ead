What get, enc, status, smart, devmap, locate, import and report refuse before they ask the library anything.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ ktsetup ver > /dev/null; calls > started
  $ refused() { kt "$@"; echo "= $?"; calls | diff started - || echo "the library was asked"; }

  $ refused get
  get: option -o is required
  = 1
  $ refused get -o disk
  -o : invalid object 'disk', should be VD, PD or Array
  = 1
  $ refused 1 get -o array
  -o : array is not supported on this adapter
  = 1
  $ refused get -o vd -i 1x
  -i : id is not a number
  = 1
  $ refused get -o vd -i 65536
  -i : id is not a number
  = 1
  $ refused get -o vd -o pd
  Duplicated option specified.
  = 1
  $ refused get -o vd -i 1 -i 1
  Duplicated option specified.
  = 1
  $ refused get -o DRIVER
  
  Linux CLI needn't support :get -o driver.
  = 0

  $ refused enc
  enc: option -o is required
  = 1
  $ refused enc -o fan
  -o: invalid option 'fan'
  = 1
  $ refused enc -o enc -i one
  -i: invalid enclosure id 'one'
  = 1
  $ refused enc -o enc -i 255
  -i : invalid id 255
  = 1
  $ refused enc -o enc -i 99999999999
  -i : invalid id 99999999999
  = 1
  $ refused enc -o ele -e 0x1
  -e: invalid element id '0x1'
  = 1
  $ refused enc -o ele -e 255
  -e: element id should be less than 255
  = 1
  $ refused enc -o ele -e 256
  -e: element id should be less than 255
  = 1
  $ refused enc -o ele -t disk
  -t: element type error:'disk'
  = 1
  $ refused enc -o ele -t fan -t pow
  Duplicated option specified.
  = 1
  $ refused enc -o ele -i 0 -e 1
  Missing -t: please specify the type of the given element id
  = 1
  $ refused enc -o elecfg
  Missing -t: please specify the type of the given element id
  = 1
  $ refused enc -a 1 | sed -n '1p;$p'
  Description:Get enclosure, enclosure element or enclosure config information.
  = 0

  $ refused status
  status: option -o is required
  = 1
  $ refused status -o vd
  -o : invalid object 'vd'
  = 1
  $ refused status -o pd -i x
  -i : id is not a number
  = 1
  $ refused status -o pd -i 70000
  -i : id is not a number
  = 1
  $ refused status -o pd -o hd
  Duplicated option specified.
  = 1

  $ refused smart
  smart: option -p is required
  = 1
  $ refused smart -p a
  -p : invalid phyiscal disk id 'a'
  = 1
  $ refused smart -p 65536
  -p : invalid phyiscal disk id '65536'
  = 1
  $ refused smart -p 1 --phyId 2
  Duplicated option specified.
  = 1
  $ refused smart -h | sed -n '1,4p;$p'
  Description:
  :Display the smart info of physical disk.
  smart -p <PD id> [-h]
  
  = 0

  $ refused devmap
  devmap: option -o is required
  = 1
  $ refused devmap -o p
  -o: Invalid object 'p'.
  = 1
  $ refused devmap -o vd -i 0x
  -i: invalid object id '0x'.
  = 1
  $ refused devmap -o vd -i 0x10000
  -i: invalid object id '0x10000'.
  = 1
  $ refused devmap -o vd -i 1 -i 1
  Duplicated option specified.
  = 1

A wrong action does not stop locate from reading on, but nothing blinks.

  $ refused locate
  missing PD id
  = 1
  $ refused locate -a blink
  -a: invalid action 'blink'
  missing PD id
  = 1
  $ refused locate -a blink -i 3
  -a: invalid action 'blink'
  = 1
  $ refused locate -i 65536
  -i: id should be a number
  = 1
  $ refused locate -i 0xG
  -i: id should be a number
  = 1
  $ refused locate -i 1 -i 0x1
  Duplicated option specified.
  = 1
  $ refused locate -o pd -o pd -i 1
  Duplicated option specified.
  = 1

  $ for command in import report; do
  >   refused 1 $command
  >   refused 1 $command -i vd
  >   refused 1 $command -i 255
  >   refused 1 $command -i 0x100000000000000000
  >   refused 1 $command -i 0xFF -i 1
  > done
  missing VD id
  = 1
  -i: id should be a number
  = 1
  -i : invalid id 255
  = 1
  -i : invalid id 18446744073709551615
  = 1
  Duplicated option specified.
  = 1
  missing VD id
  = 1
  -i: id should be a number
  = 1
  -i : invalid id 255
  = 1
  -i : invalid id 18446744073709551615
  = 1
  Duplicated option specified.
  = 1
