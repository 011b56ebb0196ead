What info accepts and refuses before it asks the library anything.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ calls > /dev/null
  $ kt info
  info: option -o is required
  [1]
  $ kt info -o disk
  -o : invalid object 'disk'
  [1]
  $ kt 1 info -o array
  -o : array is not supported on this adapter
  [1]
  $ kt info -o vd -i x
  -i : id should be a number
  [1]
  $ kt info -o vd -i 255
  -i : invalid id 255
  [1]
  $ kt info -o vd -i 300
  -i : invalid id 300
  [1]
  $ kt info -i 300
  info: option -o is required
  -i : invalid id 300
  [1]
  $ kt info -i 1
  info: option -o is required
  [1]
  $ kt info -o vd -o pd
  Duplicated option specified.
  [1]
  $ kt info -o vd -i 1 -i 2
  Duplicated option specified.
  [1]
  $ kt info -o bbu -i 1
  
  Unable to get info of BBU 1 (error 16: Invalid BBU id)
  [16]
  $ kt info -o hba -i 2
  
  Unable to get info of Adapter 2 (error 13: Invalid adapter id)
  [13]
  $ kt info -h
  Description:Display adapter(hba), virtual disk(vd), disk array,
                physical disk(pd), Port multiplexer(pm), expander(exp),
                block disk(blk) or spare drive information.
  info -o <hba|vd|ld|array|pd|hd|pm|exp|blk|spare|bbu|tandem> [-i <id>] [-h]
  
  Options:
      -o, --object <hba|vd|ld|array|pd|hd|pm|exp|blk|spare|bbu|tandem>
          Object to display: adapter (hba), virtual disk (vd or ld), disk array,
          physical disk (pd or hd), port multiplexer (pm), expander (exp),
          block disk (blk), spare drive, battery backup unit (bbu) or hybrid
          virtual disk (tandem).
      -i, --id <id>
          ID of the object, 0 to 254. Default: all objects of the kind.
      -h, --help
  
  Examples:
      info -o hba
  
      Display all adapters.
  
      info -o vd -i 1
  
      Display virtual disk 1.
  
  $ calls | grep -v -e KT_API -e KT_Adapter_Get -e KT_SIM
  [1]

Words beside the options are ignored, objects may be of either case, long names shortened.

  $ kt 1 info stray --obj VD --id=0 | head -n 4
  
  Virtual Disk Information
  -------------------------
  id:                  0
