Rebuilding virtual disks and arrays: steering, the right target disks, and what the end brings.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"name": "degraded", "adapters": [
  >  {"type": "LD-based",
  >   "disks": [{"count": 4, "type": "SATA", "size": "1TB", "on": "HBA", "port": 0}],
  >   "virtualDisks": [{"name": "mirror", "level": "RAID1", "disks": [0, null], "size": "200GiB", "status": "degraded"},
  >                    {"name": "other", "level": "RAID1", "disks": [2, 3], "size": "100GiB"}]},
  >  {"type": "array-based",
  >   "disks": [{"count": 4, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0}, {"type": "SAS", "size": "500GB"},
  >             {"type": "SAS", "size": "1TB", "on": "HBA", "port": 6}],
  >   "config": {"AutoRebuildOn": 0},
  >   "arrays": [{"name": "striped", "level": "RAID5", "disks": [0, 1, null], "virtualDisks": [{"name": "data"}]},
  >              {"name": "pair", "level": "RAID1", "disks": [2, 3], "spares": [5], "virtualDisks": [{"name": "c"}]}]}]}
  > EOF
  $ lab lab.json
  $ progress() { kt $1 info -o vd -i 0 | grep -e '^status' -e 'BGA progress' -e 'PD RAID'; }

A virtual disk: a free disk that holds no block of it.

  $ progress 0
  status:              degraded
  PD RAID setup:       0 * 
  $ kt rebuild -l 0 -d 3
  PD 3 is not a free disk and can not be used to rebuild VD.
  [1]
  $ kt rebuild -l 0 -d 1
  Start rebuild successfully
  $ ktsim clock advance 15m
  $ kt rebuild -a pause -l 0
  Pause successfully
  $ progress 0
  status:              degraded
  PD RAID setup:       0 1 
  BGA progress:    rebuilding is paused at 35%
  $ kt rebuild -a resume -l 0
  Resume successfully
  $ ktsim clock until idle
  Idle after 27 min 40 s.
  $ progress 0
  status:              online
  PD RAID setup:       0 1 
  $ kt event | sed -n 's/^Description:  //p' | grep -v '%'
  Virtual Disk 0 is online
  Rebuild disk on virtual disk 0 completed
  Rebuild disk on virtual disk 0 resumed
  Rebuild disk on virtual disk 0 paused
  Rebuild disk on virtual disk 0 started
  Adapter 0 with serial number KS260100004711 is detected

An array: free disks of the array's block size, as large as its members.

  $ kt 1 rebuild -l 0 -d 4
  PD 4 doesn't have enough space for rebuild.
  [1]
  $ kt 1 rebuild -l 0 -d 5
  PD 5 is dedicated for array 1.
  [1]
  $ kt 1 delete -o spare -i 5 --waiveconfirmation
  Delete the spare disk 5 successfully.
  $ kt 1 rebuild -l 0 -d 5
  Start rebuild successfully
  $ ktsim clock advance 10m
  $ progress 1
  status:              degraded
  PD RAID setup:       0 1 5 
  BGA progress:    rebuilding is 5% done
  $ kt 1 rebuild -a stop -l 0
  Abort successfully
  $ kt 1 rebuild -a restart -l 0
  Restart successfully
  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ progress 1
  status:              online
  PD RAID setup:       0 1 5 
  $ kt 1 info -o array -i 0 | grep -e Status -e 'PD IDs'
  PD IDs:              0 1 5
  Status:              functional
  $ calls | grep -e Start -e Control | cut -d ' ' -f 1,3-
  KT_LD_StartRebuild vd=0 pd=1 -> 0
  KT_LD_BGAControl vd=0 control=2 -> 0
  KT_LD_BGAControl vd=0 control=3 -> 0
  KT_LD_DG_StartRebuild dg=0 pdCount=1 pds=0500 -> 0
  KT_DG_BGAControl dg=0 control=4 -> 0
  KT_DG_BGAControl dg=0 control=1 -> 0
