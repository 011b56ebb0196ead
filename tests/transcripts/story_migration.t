A virtual disk moves to another level on more disks, interrupted twice; then an array with all its virtual disks.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"adapters": [
  >  {"type": "LD-based", "disks": [{"count": 8, "type": "SATA", "size": "1TB"}],
  >   "virtualDisks": [{"level": "RAID1", "disks": [1, 2], "size": "200GiB"},
  >                    {"level": "RAID5", "disks": [5, 6, 7], "size": "300GiB"}]},
  >  {"type": "array-based", "disks": [{"count": 8, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0}],
  >   "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "a", "size": "100GiB"}, {"name": "b"}]},
  >              {"level": "RAID1", "disks": [3, 4], "virtualDisks": [{"name": "c"}]}]}]}
  > EOF
  $ lab lab.json
  $ progress() { kt $1 info -o vd -i 0 | grep -e '^target' -e 'BGA progress' -e 'RAID mode' -e '^size' -e 'PD RAID'; }

  $ kt migrate -a size -l 0 -r 5 -d 1,2,3
  Migrate VD size = 204800 M
  $ kt migrate -l 0 -r 5 -d 1,2,3
  Start migration successfully
  $ ktsim clock advance 30m
  $ progress 0
  RAID mode:           RAID1
  size:                204800 M
  PD RAID setup:       1 2 
  BGA progress:    migration is 35% done
  target virtual: 
  RAID mode:           RAID5
  size:                204800 M
  PD RAID setup:       1 2 3 
  $ for action in pause resume stop restart; do kt migrate -a $action -l 0; done
  Pause successfully
  Resume successfully
  Abort successfully
  Restart successfully
  $ ktsim clock until idle
  Idle after 55 min 20 s.
  $ kt event | sed -n 's/^Description:  //p' | grep Migr
  Migration on virtual disk 0 completed
  Migration on virtual disk 0 is 75% done
  Migration on virtual disk 0 is 50% done
  Migration on virtual disk 0 restarted
  Migration on virtual disk 0 aborted
  Migration on virtual disk 0 resumed
  Migration on virtual disk 0 paused
  Migration on virtual disk 0 is 25% done
  Migration on virtual disk 0 started

An array, with all its virtual disks.

  $ kt 1 migrate -a size -l 0 -d 0,1,2,5
  Migrated size will be 2861417 M
  $ kt 1 migrate -l 0 -d 0,1,2,5
  Start migrate successfully
  $ ktsim clock advance 1h
  $ progress 1 | grep -A3 target
  target virtual: 
  RAID mode:           RAID5
  size:                102400 M
  PD RAID setup:       0 1 2 5 
  $ kt 1 migrate -l 1 -r 5 -d 3,4,6
  
  Unable to migrate array 1 (error 81: Another array is currently doing migration. Only one migration is allowed at any time.).
  [81]
  $ ktsim clock until idle
  Idle after 5 h 37 min.
  $ kt 1 info -o array -i 0 | grep -e 'PD IDs' -e space
  Total space:         2861417 M
  Remaining space:     51199 M
  Member used space:   953805 M
  PD IDs:              0 1 2 5
