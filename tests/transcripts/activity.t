Background activities on the simulated adapters: what is started, how it is steered, and what its end brings.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ progress() { kt $1 info -o $2 | grep -e 'BGA progress' -e 'Media patrol' -e 'PD RAID.*\*'; }
  $ told() { kt $1 event | sed -n 's/^Description:  //p' | grep -v ' is [257][05]% done' | head -$2 | tac; }

Initialization and check of a virtual disk, from the start to the event of the end.

  $ kt 1 delete -o vd -i 1 -f --waiveconfirmation
  Delete VD 1 successfully.
  $ kt 1 init -l 0
  Start initialization successfully
  $ ktsim clock advance 10m
  $ for action in pause resume stop; do kt 1 init -a $action -l 0; progress 1 vd; done
  Pause successfully
  BGA progress:    initializing is paused at 23%
  Resume successfully
  BGA progress:    initializing is 23% done
  Abort successfully
  BGA progress:    initializing is aborted
  $ kt 1 init -a restart -l 0
  Resume successfully
  $ ktsim clock until idle
  Idle after 42 min 40 s.
  $ kt 1 cc -t check -l 0
  Start consistency check
  $ ktsim clock until idle
  Idle after 42 min 40 s.
  $ told 1 8
  Background initialization on virtual disk 0 started
  Background initialization on virtual disk 0 paused
  Background initialization on virtual disk 0 resumed
  Background initialization on virtual disk 0 aborted
  Background initialization on virtual disk 0 restarted
  Background initialization on virtual disk 0 completed
  Consistency check on Virtual Disk 0 started
  Consistency check on Virtual Disk 0 completed

Everything pauses at once; virtual disks on the same disks take turns, and disks are patrolled only when left alone.

  $ kt mp -d 0
  Start media patrol successfully
  $ (echo; echo y) | kt 0 init -l 2
  Init VD will stop Media patrol on PD. Do you want to continue?(y or n)
  Please input y or n.
  Start initialization successfully
  $ kt 0 cc -l 3
  Start consistency check
  $ kt pause -c 0
  $ kt 0 init -a resume -l 2
  Resume successfully
  $ kt 0 cc -l 0
  Start consistency check
  $ kt 0 init -l 1
  Start initialization successfully
  $ progress 0 vd
  BGA progress:    synchronizing is auto paused at 0%
  BGA progress:    initializing is 0% done
  BGA progress:    initializing is 0% done
  BGA progress:    synchronizing is paused at 0%
  $ progress 0 pd
  Media patrol:        paused at 0%

A spare is patrolled by the hour.

  $ lab default
  $ kt mp -d 9
  Start media patrol successfully
  $ ktsim clock advance 30m
  $ for action in pause resume stop restart; do kt mp -a $action -d 9; progress 0 "pd -i 9"; done
  Pause successfully
  Media patrol:        paused at 7%
  Resume successfully
  Media patrol:        running, 7% done
  Abort successfully
  Media patrol:        aborted
  Restart successfully
  Media patrol:        running, 0% done
  $ ktsim clock until idle
  Idle after 6 h 37 min.
  $ told 0 3
  Media Patrol on physical disk 9 aborted
  Media Patrol on physical disk 9 restarted
  Media Patrol on physical disk 9 completed

Rebuilding by hand: a free disk of the right size that nobody else waits for. Copy back is steered, never started.

  $ cat > lab.json << EOF
  > {"adapters": [
  >  {"type": "LD-based", "disks": [{"count": 4, "type": "SATA", "size": "1TB", "on": "HBA", "port": 0}],
  >   "virtualDisks": [{"level": "RAID1", "disks": [0, null], "size": "200GiB", "status": "degraded"}]},
  >  {"type": "array-based", "config": {"AutoRebuildOn": 0},
  >   "disks": [{"count": 6, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0}, {"type": "SAS", "size": "500GB"},
  >             {"type": "SAS", "size": "1TB", "on": "HBA", "port": 6}],
  >   "arrays": [{"level": "RAID5", "disks": [0, 1, null], "virtualDisks": [{"name": "data"}]},
  >              {"level": "RAID1", "disks": [2, 3], "spares": [7], "virtualDisks": [{"name": "c"}]},
  >              {"level": "RAID1", "disks": [4, 5],
  >               "virtualDisks": [{"activity": {"kind": "copy back", "percent": 40, "disk": 5}}]}]}]}
  > EOF
  $ lab lab.json
  $ progress 0 vd
  PD RAID setup:       0 * 
  $ kt rebuild -l 0 -d 1
  Start rebuild successfully
  $ ktsim clock until idle
  Idle after 1 h 59 min.
  $ progress 0 vd
  [1]
  $ told 0 3
  Rebuild disk on virtual disk 0 started
  Rebuild disk on virtual disk 0 completed
  Virtual Disk 0 is online
  $ kt 1 delete -o spare -i 7 --waiveconfirmation
  Delete the spare disk 7 successfully.
  $ kt 1 rebuild -l 0 -d 7
  Start rebuild successfully
  $ kt 1 rebuild -a stop -l 0
  Abort successfully
  $ kt 1 rebuild -a restart -l 0
  Restart successfully
  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ kt 1 info -o array -i 0 | grep -e Status -e 'PD IDs'
  PD IDs:              0 1 7
  Status:              functional
  $ lab lab.json
  $ kt 1 copyback -a pause -l 2
  Pause successfully
  $ ktsim clock advance 1d
  $ progress 1 vd
  PD RAID setup:       0 1 * 
  BGA progress:    copy back is paused at 40%
  $ kt 1 copyback -a resume -l 2
  Resume successfully
  $ ktsim clock until idle
  Idle after 1 h 59 min.

