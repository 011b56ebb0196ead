Initialization and consistency check of virtual disks, from the start to the event of their end.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ progress() { kt $1 info -o vd | grep 'BGA progress'; }
  $ kt 1 delete -o vd -i 1 --waiveconfirmation
  Delete VD 1 successfully.
  $ kt 1 init -l 0
  Start initialization successfully
  $ ktsim clock advance 10m
  $ progress 1
  BGA progress:    initializing is 23% done
  $ kt 1 init -a pause -l 0
  Pause successfully
  $ ktsim clock advance 1d
  $ progress 1
  BGA progress:    initializing is paused at 23%
  $ kt 1 init -a resume -l 0
  Resume successfully
  $ kt 1 init -a stop -l 0
  Abort successfully
  $ progress 1
  BGA progress:    initializing is aborted
  $ kt 1 init -a restart -l 0
  Resume successfully
  $ ktsim clock until idle
  Idle after 42 min 40 s.
  $ kt 1 event | sed -n 's/^Description:  //p' | head -8
  Background initialization on virtual disk 0 completed
  Background initialization on virtual disk 0 is 75% done
  Background initialization on virtual disk 0 is 50% done
  Background initialization on virtual disk 0 is 25% done
  Background initialization on virtual disk 0 restarted
  Background initialization on virtual disk 0 aborted
  Background initialization on virtual disk 0 resumed
  Background initialization on virtual disk 0 paused

A check that only looks, then one that repairs. One that was stopped waits to be restarted.

  $ kt 1 cc -t check -l 0
  Start consistency check
  $ kt 1 cc -a stop -l 0
  Abort successfully
  $ kt 1 cc -l 0
  
  VD 0 is having background activities.
  $ kt 1 cc -a restart -l 0
  Restart successfully
  $ ktsim clock until idle
  Idle after 42 min 40 s.
  $ kt 1 cc -l 0
  Start consistency check
  $ calls | grep -e Start -e Control | cut -d ' ' -f 1,3-
  KT_LD_BGAControl vd=1 control=7 -> 0
  KT_LD_StartINIT vd=0 initType=2 -> 0
  KT_LD_BGAControl vd=0 control=2 -> 0
  KT_LD_BGAControl vd=0 control=3 -> 0
  KT_LD_BGAControl vd=0 control=4 -> 0
  KT_LD_BGAControl vd=0 control=1 -> 0
  KT_LD_StartConsistencyCheck vd=0 fix=0 -> 0
  KT_LD_BGAControl vd=0 control=4 -> 0
  KT_LD_BGAControl vd=0 control=1 -> 0
  KT_LD_StartConsistencyCheck vd=0 fix=1 -> 0

Everything pauses at once; virtual disks on the same disks take turns.

  $ kt 0 init -l 2
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
  $ progress 0
  BGA progress:    synchronizing is auto paused at 0%
  BGA progress:    initializing is 0% done
  BGA progress:    initializing is 0% done
  BGA progress:    synchronizing is paused at 0%
