What adapters do when things cross each other.

  $ . "$TESTDIR/setup.sh"
  $ cat > twelve.json <<EOF
  > {"adapters": [{"type": "array-based", "battery": true, "disks": [{"count": 12, "type": "SATA", "size": "500GB"}]}]}
  > EOF
  $ fresh() { ktsim create --lab twelve.json --at "2026-01-05 08:00:00" --force; }
  $ make() { kt create -o array -r $1 -d $2 | grep -v success; kt create -o vd -a 0 -s 100000 | grep -v success
  >          ktsim clock until idle > /dev/null; }
  $ log() { kt event | grep -e Level -e Descr | cut -c15- | paste -d' ' - - | tac; }

What a virtual disk is migrated to does as its own members do.

  $ fresh; make 5 0,1,2; kt migrate -l 0 -d 0,1,2,3
  Start migrate successfully
  $ ktsim disk fail 1 -f; kt info -o vd -i 0 | grep -e status -e Status
  status:              degraded
  BGA status:          running
  status:              degraded
  BGA status:          N/A

What is regained is not logged as lost.

  $ fresh; make 6 0,1,2,3,4; kt assign -d 5 > /dev/null; kt assign -d 6 > /dev/null
  $ ktsim disk fail 0 -f; ktsim disk fail 1 -f; ktsim clock until idle; log | sed '1,/set down/d' | grep -v '%'
  Idle after 13 min 54 s.
  [WARNING] Virtual Disk 0 lost a redundancy disk
  [INFO] Spare disk 5 used by disk array 0
  [INFO] Rebuild disk on virtual disk 0 started
  [MAJOR] Physical disk 1 read write error.
  [CRITICAL] Physical disk 1 is set down
  [MAJOR] Virtual Disk 0 is degraded
  [INFO] Rebuild disk on virtual disk 0 completed
  [INFO] Spare disk 6 used by disk array 0
  [INFO] Rebuild disk on virtual disk 0 started
  [INFO] Rebuild disk on virtual disk 0 completed
  [INFO] Virtual Disk 0 is online

An aborted check can be restarted, but keeps nobody from anything else.

  $ fresh; make 5 0,1,2; kt cc -l 0; kt cc -l 0 -a stop; ktsim status | grep abort
  Start consistency check
  Abort successfully
            [--------------------] 0% check and fix, aborted
  $ kt cc -l 0 -a restart; kt cc -l 0 -a stop
  Restart successfully
  Abort successfully
  $ kt migrate -l 0 -d 0,1,2,3; ktsim status | grep '%'
  Start migrate successfully
  Adapter 0  Tarn R8i (array-based), battery 95%, last event 13
            [--------------------] 0% migration to RAID5 of 4 disks, 20 min 50 s left
  $ fresh; make 5 0,1,2; kt cc -l 0; kt cc -l 0 -a stop; kt mp -d 2; kt mp -d 2 -a stop
  Start consistency check
  Abort successfully
  Start media patrol successfully
  Abort successfully
  $ kt info -o vd -i 0 | grep -i bga; ktsim clock advance 23h59m; kt mp -d 2 -a restart; kt mp -d 2 -a stop
  BGA status:          N/A
  Restart successfully
  Abort successfully
  $ kt cc -l 0 -t check; ktsim clock until idle; kt mp -d 2; kt mp -d 2 -a stop; ktsim clock advance 24h; ktsim status | grep abort
  Start consistency check
  Idle after 10 min 25 s.
  Start media patrol successfully
  Abort successfully
  [1]

A voltage that is wrong is told.

  $ lab default; ktsim enclosure reading 1 vlt 0 600; ktsim enclosure reading 1 vlt 0 1200; log | tail -2
  [MAJOR] Adapter 0 power supply 0 alert
  [INFO] Adapter 0 power supply 0 is optimal
