Text from adapters is never more than text: bounded by its field, control bytes shown as '?', no format, no terminal
escape. Counts and indexes that lie end no listing late.

  $ . "$TESTDIR/setup.sh"
  $ lab hostile
  $ for a in 0 1; do for o in hba vd array pd blk spare tandem; do kt $a info -o $o; done; done > all.txt
  $ LC_ALL=C grep -c -P '[^\x20-\x7E]' all.txt
  0
  [1]
  $ kt info -o hba -i 0 | grep -e Serial -e Model
  Serial number:                       %n%s?[2J?"\???????%n
  Model:                               ?31m%99999d?[H??%n$(
  $ kt info -o vd -i 0 | grep name
  name:                ?]0;x?%n?[31m
  $ kt info -o pd -i 0 | grep -e model -e Serial -e Firmware
  model:               %n%s?[2J?"\???????%n%s?[2J?"\???????%n%s
  Serial:              ?]0;x?%n?[31m
  Firmware version:    ?31m%999

  $ for kind in count next; do
  >   for call in KT_LD_GetInfo KT_DG_GetInfo KT_PD_GetHDInfo KT_BLK_GetInfo KT_PD_GetHDRaidStatus; do
  >     ktsim fault $call 0 --kind $kind
  >   done
  >   for o in vd array pd blk spare; do timeout 20 ktsetup info -o $o > /dev/null || echo $o $?; done
  >   ktsim fault clear
  > done
  ktsetup: the adapter's list does not go on behind index 0: what follows is missing
  vd 1
  ktsetup: the adapter's list does not go on behind index 0: what follows is missing
  array 1
  ktsetup: the adapter's list does not go on behind index 0: what follows is missing
  pd 1
  ktsetup: the adapter's list does not go on behind index 0: what follows is missing
  blk 1
  ktsetup: the adapter's list does not go on behind index 0: what follows is missing
  spare 1
