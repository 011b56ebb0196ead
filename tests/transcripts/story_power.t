What happens when the power goes.

  $ . "$TESTDIR/setup.sh"
  $ statuses() { kt info -o vd | sed -n 's/^status: *//p' | paste -sd, | sed 's/,/, /g'; }
  $ log() { kt event | grep -e Level -e Descr | cut -c15- | paste -d' ' - - | tac; }
  $ news() { log | sed -n '/is detected/h;/is detected/!H;${x;s/^[^\n]*\n*//;/./p}'; }

A machine that is off does not answer, and does nothing meanwhile.

  $ lab default; ktsim disk fail 0 -f; ktsim clock advance 1h; ktsim power off; ktsetup info -o vd
  ktraid-sim: KT_API_Initialize: the machine is switched off
  KT_API_Initialize() failed!
  [1]
  $ ktsim clock advance 10h; ktsim clock until idle; ktsim power off; ktsim event 1 1; ktsim status | grep -e Power -e '%'
  Idle after 0 s.
  ktsim: the machine is off already
  ktsim: the adapter does not run, and logs nothing
  Power   off
  Adapter 0  Tarn R8i (array-based), battery 94%, last event 8
    VD 2     orders           RAID5          2.0 TiB  array 1  degraded, write-back (auto: battery 94%)
            [#####---------------] 27% rebuild of disk 9 from disks 1 2
            [##################--] 91% rebuild of disk 5 from disks 3 4
  $ ktsim power on; ktsim power on; ktsim status | grep '[0-9]% rebuild'
  ktsim: the machine is on already
            [#####---------------] 27% rebuild of disk 9 from disks 1 2, 2 h 38 min left
            [##################--] 91% rebuild of disk 5 from disks 3 4, 8 min 49 s left

What is gone at the boot is told then, and not before. It may be back before anybody notices.

  $ lab default; ktsim power off; ktsim disk pull 1 3 7 8 -f; ktsim check; ktsim power on; news | grep -v INFO
  The state is sound.
  [CRITICAL] Virtual disk 0 missing at boot
  [CRITICAL] Virtual disk 1 missing at boot
  [MAJOR] Physical disk missing from virtual disk 2 configuration at boot
  [MAJOR] Physical disk missing from virtual disk 3 configuration at boot
  $ ktsim power off; ktsim disk insert 1 3 7 8; ktsim power on; statuses
  online, online, degraded, partially optimal

Each boot tells what is wrong: what does not answer, is about to fail, is broken or missing.

  $ lab default; ktsim power off; ktsim disk trip 3; ktsim disk fail 12 -f; ktsim disk pull 1 5 6 -f; ktsim enclosure set 1 fan 2 failed
  $ ktsim enclosure reading 1 tpr 0 60; ktsim enclosure set 1 dor 0 open; ktsim power on; news | grep -v -i -e rebuild -e spare | paste -d'|' - -
  [WARNING] Request to physical disk 12 is timed out|[WARNING] SMART has over threshold on physical disk 3
  [MAJOR] Adapter 0 Defective fan 2 found|[WARNING] Adapter 0 is high temperature
  [WARNING] Adapter 0 intrusion is opened|[MAJOR] Physical disk missing from virtual disk 2 configuration at boot
  [MAJOR] Physical disk missing from virtual disk 3 configuration at boot|

What left while the power was off, and the machine has worked without since, is no copy any more.

  $ lab default; ktsim power off; ktsim disk pull 7 -f; ktsim reboot; ktsim power on; ktsim reboot
  ktsim: the machine is off (ktsim power on boots it)
  $ ktsim power off; ktsim disk insert 7; ktsim power on; ktsim status -a 0 | grep -e 'PD 7 ' -e 'VD [01]'
    VD 0     boot             RAID1        100.0 GiB  array 0  degraded, write-back, runs the OS
    VD 1     scratch          RAID1        400.0 GiB  array 0  degraded, write-back
    PD 7     Petrel PX800G SAS SSD SAS SSD  745.2 GiB  bay 1:7     member of array 0

A battery keeps what was written last, if it lasts.

  $ lab default; ktsim power off --pull; ktsim clock advance 1d; ktsim battery show | head -1; ktsim power on; news
  Charge       idle, 62%
  [INFO] Auto starts flush dirty data
  [INFO] Auto dirty data flushed 3/3
  [INFO] Auto finish flush dirty data
  [INFO] Battery started charging
  $ lab default; ktsim power off --pull; ktsim clock advance 3d; ktsim power on; news | grep -v Sync
  [MAJOR] Page data has an ECC error and can not be flushed
  [INFO] Battery started charging
  [WARNING] Battery capacity is below threshold
  [WARNING] Battery status is abnormal, VDs with auto-cache are now in write through mode

What it kept for a virtual disk that is offline waits for that, as long as the battery lasts.

  $ kept() { lab default; ktsim power off --pull; ktsim disk pull 0 1 -f; ktsim power on; }
  $ kept; news | grep -e data.fl -e Virt; ktsim status -a 0 | grep 'VD 2 '; ktsim power off; ktsim clock advance 1d; ktsim power on
  [CRITICAL] Virtual disk 2 missing drives and went offline at boot
  [INFO] Auto dirty data flushed 2/2
    VD 2     orders           RAID5          2.0 TiB  array 1  offline, the cache keeps what it lacks
  $ ktsim disk insert 0 1; news | grep -e online -e flushed | joined
  [INFO] Virtual Disk 2 is online | [INFO] Auto dirty data flushed 1/1
  $ kept; ktsim power off; ktsim disk insert 0 1; ktsim power on; news | grep data.flushed
  [INFO] Auto dirty data flushed 1/1
  $ kept; ktsim power off; ktsim battery remove -f; ktsim power on; ktsim disk insert 0 1; news | grep -e data -e Sync | joined
  [MAJOR] Page data has an ECC error and can not be flushed | [MAJOR] Synchronization on Virtual Disk 2 failed
  $ kept; echo y | kt delete -o vd -i 2 > /dev/null; ktsim power off; ktsim battery remove -f; ktsim power on; news | grep data
  [1]

Encrypting ports are locked until their keys are mounted again, and what lies on two of them waits for both.

  $ cat > keys.json <<XX
  > {"adapters": [{"type": "LD-based", "battery": true, "disks": [{"port": 1}, {"port": 2}],
  >   "keys": [{"id": 0, "key": "one", "password": "open", "ports": [{"id": 1, "enabled": true}, {"id": 2, "enabled": true}]}]}]}
  > XX
  $ ktsim create --lab keys.json --force --at "2026-01-05 08:00:00"; for pd in 0 1; do kt forceonline -i $pd > /dev/null; done
  $ kt create -r 1 -d 0,1 > /dev/null; ktsim clock until idle > /dev/null
  $ ktsim power off --pull; ktsim power on; ktsim status | grep -e 'PD [01]' -e 'VD 0' -e Port
    Port 1   locked: it encrypts, and no key is mounted
    Port 2   locked: it encrypts, and no key is mounted
    VD 0     VD_R1_1          RAID1        931.5 GiB  offline, the cache keeps what it lacks
    PD 0     Gannet GT1000G        SATA     931.5 GiB  port 1      member of VD 0, offline (no key is mounted at its port)
    PD 1     Gannet GT1000G        SATA     931.5 GiB  port 2      member of VD 0, offline (no key is mounted at its port)
  $ for port in 1 2; do kt aesport -o mount -i $port -e 0 -p open > /dev/null; kt info -o vd -i 0 | grep ^status; done
  status:              offline
  status:              online

An image runs from the boot on. A damaged one gives way to the one before; without either there is little left.

  $ lab default; ktsim image make new.bin --version 9.8.7.6; kt flash -a update -t firmware -f new.bin | tail -1
  Flash command is returned successfully.
  $ ktsim image damage; ktsim reboot
  $ for t in firmware bios autoload; do ktsim image damage -t $t --part both; done; ktsim reboot
  $ kt info -o hba -i 0 | grep '^Firmware:'
  Firmware:                            none
  $ kt info -o vd -i 0; ktsim status -a 0 | sed -n 7,8p; ktsim power off; ktsim disk pull 3 -f; ktsim power on
  
  Unable to get info of vd 0 (error 20: Link time out)
    does not run: its firmware or boot loader is not sound
    Flash    not sound: firmware bios autoload
  $ kt flash -a update -t firmware -f new.bin | tail -1; ktsim reboot; log | tail -2
  Flash command is returned successfully.
  [INFO] Spare disk 10 used by disk array 2
  [INFO] Rebuild disk on virtual disk 3 started
  $ ktsim image damage -a 1; echo y | kt flash -a erase -t bin | tail -1; ktsim image damage -t bin; ktsim reboot; kt info -o bbu
  ktsim: adapter 1 has no such images
  Erase bios command is returned successfully.
  ktsim: adapter 0 holds no such image
  Unable to get info of BBU. (error 20: Link time out).
  [20]
