A list whose answers stop is not a list that ends. Whoever shows it, shows what came, and fails.

  $ . "$TESTDIR/setup.sh"
  $ lab full
  $ stops() { ktsim fault $1 --kind next --times 1; : > trace; }
  $ stops KT_PD_GetHDInfo
  $ kt info -o pd > all; echo $?; grep -c 'Adapter:' all
  ktsetup: the adapter's list does not go on behind index 0: what follows is missing
  1
  128
  $ for list in "KT_LD_GetInfo info -o vd" "KT_DG_GetInfo info -o array" "KT_BLK_GetInfo info -o blk" \
  >   "KT_PD_GetHDRaidStatus info -o spare" "KT_PD_GetConfig get -o pd" "KT_PD_GetSmartStatus status -o pd" \
  >   "KT_ENC_GetEnclosureInfo enc -o enc" "KT_PD_GetHDInfo devmap -o pd"; do
  >   set -- $list; stops $1; shift; kt "$@" > shown 2> told
  >   echo "$? $(grep -c 'does not go on' told) $(grep -c error shown)"; done | uniq -c
        8 1 1 0

Whoever decides or saves something from it does not.

  $ lab default && kt 1 delete -o vd -i 2 --waiveconfirmation > /dev/null
  $ while read -r call words; do stops $call; kt $words; done 2> told << EOF
  > KT_LD_GetInfo 1 create -r 0 -d 8,9 --waiveconfirmation
  > KT_BLK_GetInfo 1 create -r 0 -d 8,9 -n x --waiveconfirmation
  > KT_DG_GetInfo create -o array -r 1 -d 4,5
  > EOF
  
  Failed to create virtual disk (error 1: Failed).
  Can not get disk 8 information(error 1: Failed).
  
  Failed to create array (error 1: Failed).
  [1]
  $ for call in KT_LD_GetInfo KT_PD_GetHDRaidStatus; do stops $call; ktcfg 1 backup_cfg -f saved 2>> told | tail -1; done
  Executes get ld info fail (error 1: Failed).
  Executes get pd spare info  fail (error 1: Failed).
  $ grep -c "the adapter's list does not go on behind index 0" told; test -e saved
  5
  [1]
  $ grep -vE 'KT_(API|SIM)_|Get|Flash_Bin a=1 action=240' trace
  [1]
