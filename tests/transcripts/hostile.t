Text from adapters is never more than text: bounded by its field, control bytes shown as '?', no format, no terminal
escape. Counts and indexes that lie end no listing late.

  $ . "$TESTDIR/setup.sh"
  $ lab hostile
  $ for a in 0 1; do for o in hba vd array pd blk spare tandem; do kt $a info -o $o; done; done > all.txt
  $ LC_ALL=C grep -c -P '[^\x20-\x7E]' all.txt
  0
  [1]
  $ kt info -o pd -i 0 | grep model
  model:               %n%s?[2J?"\???????%n%s?[2J?"\???????%n%s

  $ for list in "KT_LD_GetInfo vd" "KT_DG_GetInfo array" "KT_PD_GetHDInfo pd" "KT_BLK_GetInfo blk" "KT_PD_GetHDRaidStatus spare"; do
  >   ktsim fault ${list% *} 0 --kind count; timeout 20 ktsetup info -o ${list#* } > /dev/null || echo $list $?; done
