Rebuilding virtual disks and arrays: steering, the right target disks, and what the end brings.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"name": "degraded", "adapters": [
  >  {"type": "LD-based",
  >   "disks": [{"count": 5, "type": "SATA", "size": "1TB", "on": "HBA", "port": 0}],
  >   "virtualDisks": [{"name": "mirror", "level": "RAID1", "disks": [0, null], "size": "200GiB", "status": "degraded"},
  >                    {"name": "other", "level": "RAID1", "disks": [2, 3], "size": "100GiB"}]},
  >  {"type": "array-based",
  >   "disks": [{"count": 4, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0},
  >             {"type": "SAS", "size": "1TB", "sector": 4096, "on": "HBA", "port": 4},
  >             {"type": "SAS", "size": "500GB", "on": "HBA", "port": 5},
  >             {"type": "SAS", "size": "1TB", "on": "HBA", "port": 6}],
  >   "config": {"AutoRebuildOn": 0},
  >   "arrays": [{"name": "striped", "level": "RAID5", "disks": [0, 1, null], "virtualDisks": [{"name": "data"}]},
  >              {"name": "pair", "level": "RAID1", "disks": [2, 3], "spares": [6], "virtualDisks": [{"name": "c"}]}]}]}
  > EOF
  $ lab lab.json
  $ progress() { kt $1 info -o vd -i $2 | grep -e '^status' -e 'BGA progress' -e 'PD RAID'; }
  $ steering() { calls | grep -e Start -e Control | cut -d ' ' -f 1,3-; }

A virtual disk: a free disk that holds no block of it.

  $ progress 0 0
  status:              degraded
  PD RAID setup:       0 * 
  $ kt rebuild -l 0
  At least one target PD is required
  [1]
  $ kt rebuild -l 0 -d 1,4
  -d: Only One PD is needed for rebuilding!
  [1]
  $ kt rebuild -l 0 -d 0
  PD 0 is not a free disk and can not be used to rebuild VD.
  [1]
  $ kt rebuild -l 0 -d 3
  PD 3 is not a free disk and can not be used to rebuild VD.
  [1]
  $ kt rebuild -l 0 -d 9
  
  Unable to get necessary info(error 9: Invalid physical disk id).
  [9]
  $ kt rebuild -l 9 -d 1
  
  Unable to get status of VD 9 (error 8: Invalid virtual disk id).
  [8]
  $ steering
  $ kt rebuild -l 1 -d 1
  
  Unable to rebuild VD 1 (error 60: Specified virtual disk is functional).
  [60]
  $ kt rebuild -l 0 -d 1
  Start rebuild successfully
  $ ktsim clock advance 15m
  $ progress 0 0
  status:              degraded
  PD RAID setup:       0 1 
  BGA progress:    rebuilding is 35% done
  $ kt rebuild -l 0 -d 4
  
  Virtual disk 0 is having background activity.
  $ kt rebuild -a pause -l 0
  Pause successfully
  $ kt rebuild -a stop -l 0
  
  VD 0 rebuilding is currently paused
  $ kt rebuild -a resume -l 0
  Resume successfully
  $ ktsim clock until idle
  Idle after 27 min 40 s.
  $ progress 0 0
  status:              online
  PD RAID setup:       0 1 
  $ kt event | sed -n 's/^Description:  //p' | grep -v '%'
  Virtual Disk 0 is online
  Rebuild disk on virtual disk 0 completed
  Rebuild disk on virtual disk 0 resumed
  Rebuild disk on virtual disk 0 paused
  Rebuild disk on virtual disk 0 started
  Adapter 0 with serial number KS260100004711 is detected
  $ steering
  KT_LD_StartRebuild vd=1 pd=1 -> 60
  KT_LD_StartRebuild vd=0 pd=1 -> 0
  KT_LD_BGAControl vd=0 control=2 -> 0
  KT_LD_BGAControl vd=0 control=3 -> 0

An array: free disks of the array's block size, as large as its members.

  $ kt 1 info -o array -i 0 | grep -e Status -e 'PD IDs'
  PD IDs:              0 1
  Status:              At least one PD is missing from this array
  $ kt 1 rebuild -l 0 -d 2
  PD 2 is not a free disk.
  [1]
  $ kt 1 rebuild -l 0 -d 6
  PD 6 is dedicated for array 1.
  [1]
  $ kt 1 rebuild -l 0 -d 4
  Block size of PD 4 (4096) doesn't match block size of array 0 (512).
  [1]
  $ kt 1 rebuild -l 0 -d 5
  PD 5 doesn't have enough space for rebuild.
  [1]
  $ kt 1 rebuild -l 0 -d 9
  Unable to get status of PD 9 (error 9: Invalid physical disk id).
  [9]
  $ kt 1 rebuild -l 5 -d 4
  Unable to get info of array 5 (error 17: Invalid array id).
  [17]
  $ kt 1 delete -o spare -i 6 --waiveconfirmation
  Delete the spare disk 6 successfully.
  $ kt 1 rebuild -l 0 -d 6
  Start rebuild successfully
  $ ktsim clock advance 10m
  $ progress 1 0
  status:              degraded
  PD RAID setup:       0 1 6 
  BGA progress:    rebuilding is 5% done
  $ kt 1 rebuild -a restart -l 0
  
  Array 0 is currently rebuilding.
  $ kt 1 rebuild -a stop -l 0
  Abort successfully
  $ kt 1 rebuild -a resume -l 0
  
  Rebuilding array 0 is aborted and need to restart.
  $ kt 1 rebuild -a restart -l 0
  Restart successfully
  $ kt 1 rebuild -a pause -l 1
  
  Array 1 is not at rebuilding state.
  $ ktsim clock until idle
  Idle after 3 h 18 min.
  $ progress 1 0
  status:              online
  PD RAID setup:       0 1 6 
  $ kt 1 info -o array -i 0 | grep -e Status -e 'PD IDs'
  PD IDs:              0 1 6
  Status:              functional
  $ steering
  KT_LD_DG_StartRebuild dg=0 pdCount=1 pds=0600 -> 0
  KT_DG_BGAControl dg=0 control=4 -> 0
  KT_DG_BGAControl dg=0 control=1 -> 0
