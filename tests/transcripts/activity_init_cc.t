Initialization and consistency check of virtual disks, from the start to the event of their end.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ progress() { kt 1 info -o vd -i $1 | grep 'BGA progress'; }
  $ steering() { calls | grep -e Start -e Control | cut -d ' ' -f 1,3-; }
  $ kt 1 init -l 0
  Start initialization successfully
  $ ktsim clock advance 10m
  $ progress 0
  BGA progress:    initializing is 23% done
  $ kt 1 init -l 0
  
  VD 0 is currently having background activities.
  $ kt 1 cc -l 0
  
  VD 0 is having background activities.
  $ kt 1 init -a resume -l 0
  
  VD 0 is initializing.
  $ kt 1 init -a pause -l 0
  Pause successfully
  $ ktsim clock advance 1d
  $ progress 0
  BGA progress:    initializing is paused at 23%
  $ kt 1 init -a stop -l 0
  
  VD 0 initialization is in pause state, you can resume it only.
  $ kt 1 init -a resume -l 0
  Resume successfully
  $ kt 1 init -a stop -l 0
  Abort successfully
  $ progress 0
  BGA progress:    initializing is aborted
  $ kt 1 init -a resume -l 0
  
  VD 0 initialization was aborted and need to restart.
  $ kt 1 init -a restart -l 0
  Resume successfully
  $ steering
  KT_LD_StartINIT vd=0 initType=2 -> 0
  KT_LD_BGAControl vd=0 control=2 -> 0
  KT_LD_BGAControl vd=0 control=3 -> 0
  KT_LD_BGAControl vd=0 control=4 -> 0
  KT_LD_BGAControl vd=0 control=1 -> 0
  $ ktsim clock until idle
  Idle after 42 min 40 s.
  $ progress 0
  [1]
  $ kt 1 init -a pause -l 0
  
  VD 0 is not initializing.
  $ kt 1 event | sed -n 's/^Description:  //p'
  Background initialization on virtual disk 0 completed
  Background initialization on virtual disk 0 is 75% done
  Background initialization on virtual disk 0 is 50% done
  Background initialization on virtual disk 0 is 25% done
  Background initialization on virtual disk 0 restarted
  Background initialization on virtual disk 0 aborted
  Background initialization on virtual disk 0 resumed
  Virtual Disk 1 is online
  Rebuild disk on virtual disk 1 completed
  Rebuild disk on virtual disk 1 is 75% done
  Rebuild disk on virtual disk 1 is 50% done
  Background initialization on virtual disk 0 paused
  Background initialization on virtual disk 0 started
  Adapter 1 with serial number KS260101004718 is detected

A check that only looks, then one that repairs. One that was stopped waits to be restarted.

  $ kt 1 cc -t check -l 0
  Start consistency check
  $ kt 1 cc -a stop -l 0
  Abort successfully
  $ kt 1 cc -l 0
  
  VD 0 is having background activities.
  $ kt 1 cc -a restart -l 0
  Restart successfully
  $ kt 1 cc -a pause -l 0
  Pause successfully
  $ kt 1 cc -a resume -l 0
  Resume successfully
  $ ktsim clock until idle
  Idle after 42 min 40 s.
  $ kt 1 cc -l 0
  Start consistency check
  $ progress 0
  BGA progress:    synchronizing is 0% done
  $ steering
  KT_LD_StartConsistencyCheck vd=0 fix=0 -> 0
  KT_LD_BGAControl vd=0 control=4 -> 0
  KT_LD_BGAControl vd=0 control=1 -> 0
  KT_LD_BGAControl vd=0 control=2 -> 0
  KT_LD_BGAControl vd=0 control=3 -> 0
  KT_LD_StartConsistencyCheck vd=0 fix=1 -> 0

RAID0 has nothing to initialize or to compare.

  $ kt 1 init -l 2
  Full initialization for RAID 0 is not supported.
  [19]
  $ kt 1 cc -l 2
  Consistency check for RAID 0 is not supported.
  [19]
  $ kt 1 init -a stop -l 2
  
  VD 2 is not initializing.
  $ steering

Everything pauses at once.

  $ kt 0 init -l 2
  Start initialization successfully
  $ kt 0 cc -l 3
  Start consistency check
  $ kt pause -c 0
  $ kt 0 info -o vd | grep 'BGA progress'
  BGA progress:    initializing is paused at 0%
  BGA progress:    synchronizing is paused at 0%
  $ kt pause -c 2
  
  Executes  fail (error 13: Invalid adapter id).
  [13]
  $ kt 0 init -a resume -l 2
  Resume successfully
  $ kt 0 info -o vd | grep 'BGA progress'
  BGA progress:    initializing is 0% done
  BGA progress:    synchronizing is paused at 0%

Virtual disks on the same disks take turns.

  $ kt 0 cc -l 0
  Start consistency check
  $ kt 0 init -l 1
  Start initialization successfully
  $ kt 0 info -o vd | grep 'BGA progress'
  BGA progress:    synchronizing is auto paused at 0%
  BGA progress:    initializing is 0% done
  BGA progress:    initializing is 0% done
  BGA progress:    synchronizing is paused at 0%

What the library refuses.

  $ kt 1 init -l 9
  
  Unable to get info of VD 9 (error 8: Invalid virtual disk id).
  [8]
  $ kt 1 cc -l 9
  
  Unable to get info of VD 9 (error 8: Invalid virtual disk id).
  [8]
  $ lab default
  $ ktsim fault KT_LD_StartINIT 61
  $ kt 1 init -l 0
  
  Unable to start initialization on VD 0 (error 61: Virtual disk is currently having BGA).
  [61]
  $ ktsim fault KT_LD_StartConsistencyCheck 58
  $ kt 1 cc -l 0
  
  Unable to start consistency check on VD 0 (error 58: Virtual disk is not ready to receive command)
  [58]
