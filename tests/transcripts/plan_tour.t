One file says what is wanted; one command sets up a new machine, and brings it back when something broke.

  $ . "$TESTDIR/setup.sh"
  $ lab empty
  $ rest() { grep -v '^Left alone, because the file does not mention it: adapter [12] (Tarn S4h, serial KS26010'; }
  $ cat > wanted.json << EOF
  > {"adapters": [
  >   {"config": {"AutoRebuildOn": 0, "RebuildRate": 80},
  >    "disks": [{"count": 3, "type": "SATA", "size": "2TB"},
  >              {"type": "SATA", "size": "2TB", "spare": "global"}],
  >    "arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2],
  >                "virtualDisks": [{"name": "data", "size": "1TiB", "cache": "auto"},
  >                                 {"name": "rest"}]}]}]}
  > EOF
  $ echo y | ktcfg apply -f wanted.json > said; echo $?; sed '/^HBA Index/,/^Alarm/d' said | sed '/adapter 1 /d'
  3
    1. ktsetup 0 set -o hba --rebuildrate 80 --autorebuild off
       RebuildRate is 50 %, AutoRebuildOn is on
       at once
    2. ktsetup 0 create -o array -r 5 -d 0,1,2 -n demo
       array "demo" is not there
       at once
    3. ktsetup 0 create -o vd -a 0 -n data -s 1048576 -c auto
       virtual disk "data" is not there
       the initialization takes 7 s at 50 % of the disks' speed; it is redundant when it is initialized
    4. ktsetup 0 create -o vd -a 0 -n rest
       virtual disk "rest" is not there
       the initialization takes 7 s at 50 % of the disks' speed; it is redundant when it is initialized
    5. ktsetup 0 assign -d 3
       disk 3 (serial AG0000003DAA5) is no spare of the adapter
       at once
  Left alone, because the file does not mention it: adapter 2 (Tarn S4h, serial KS260102004725).
  Rehearsed on a twin, one after the other until idle: 5 commands, as wanted after 14 s.
  Carry this out? (y or n)
  1 of 5: ktsetup 0 set -o hba --rebuildrate 80 --autorebuild off
  2 of 5: ktsetup 0 create -o array -r 5 -d 0,1,2 -n demo
  Create array 0 successfully.
  3 of 5: ktsetup 0 create -o vd -a 0 -n data -s 1048576 -c auto
  Create VD 0 successfully.
  4 of 5: ktsetup 0 create -o vd -a 0 -n rest
  Create VD 1 successfully.
  5 of 5: ktsetup 0 assign -d 3
  
  Succeeded to assign the disk as a global spare disk.
  As wanted. 5 commands were carried out.
  Something still goes on; "ktreport wait" waits for its end.
  $ ktsim clock until idle
  Idle after 13 s.
  $ ktcfg plan --check -f wanted.json
  Nothing would change.

A disk fails, and by mistake somebody releases the spare. What cannot be had is told, and nothing is changed.

  $ ktsim disk fail 1 --force
  $ kt delete -o spare -i 3
  Delete the spare disk 3 successfully.
  $ ktcfg apply -f wanted.json
  wanted.json: adapters[0].disks: a SATA disk of at least 2.0 TB is wanted, and none that fits is free on adapter 0 (Tarn R8i, serial KS260100004711)
  Nothing is changed.
  [1]
  $ ktsim disk replace 1 --force
  $ ktcfg apply -f wanted.json --yes | rest | grep -e '^  *[12]\. ' -e array -e rebuild.takes -e wanted
    1. ktsetup 0 rebuild -l 0 -d 1
       array 0 "demo" lacks 1 of its disks
       the rebuild takes 4 h 8 min at 80 % of the disks' speed; until then RAID5 has less redundancy than it should, or none
    2. ktsetup 0 assign -d 3
  Rehearsed on a twin, one after the other until idle: 2 commands, as wanted after 4 h 8 min.
  As wanted. 2 commands were carried out.
  $ ktsim clock until idle; ktcfg apply -f wanted.json | rest
  Idle after 4 h 8 min.
  Nothing to do: all is as wanted.

What stands in the way goes with --delete only, and the plan names it.

  $ sed 's/RAID5/RAID0/' wanted.json > other.json
  $ ktcfg plan -f other.json
  Not reachable: adapters[0].arrays[0].level: array 0 "demo" is RAID5; a migration to RAID0 would lead to less redundancy, which none does.
    Nearest: leave it at RAID5 on disks 0,1,2; --delete deletes what is there, with its data.
  Nothing is changed.
  [1]
  $ calls > /dev/null; ktcfg plan -f other.json --delete | grep -e '[12]. kt' -e ' data of ' -e Rehearsed
    1. ktsetup 0 delete -o vd -i 0 --waiveconfirmation
       at once; the data of virtual disk 0 "data" (1.1 TB) are lost
    2. ktsetup 0 delete -o vd -i 1 --waiveconfirmation
       at once; the data of virtual disk 1 "rest" (2.9 TB) are lost
  Rehearsed on a twin, one after the other until idle: 6 commands, as wanted after 14 s.

What happens on the twin is no call to the adapters.

  $ calls | grep -c Delete
  0
  [1]
