Events are listed newest first.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ ktsim event 2 36 -d 5 -s 3 -p 42 -p 3 -p 17 -p 1 --sense 7000030000000018
  $ ktsim event 1 46 -d 1 -p 50
  $ kt event
  Current AdapterID:0
  
  Sequence:     3
  Time:         Mon Jan  5 08:00:00 2026
  Level:        [INFO]
  Description:  Fast initialization on Virtual Disk 1 is 50% done
  
  Sequence:     2
  Time:         Mon Jan  5 08:00:00 2026
  Level:        [WARNING]
  Description:  Command [0x2a] on physical disk 5 failed. Sense key=0x3, ASC=0x11, ASCQ=0x1
  Sense Code : %s
   70 00 03 00 00 00 00 18 
  
  Sequence:     1
  Time:         Mon Jan  5 08:00:00 2026
  Level:        [INFO]
  Description:  Adapter 0 with serial number KS260100004711 is detected
  
  $ kt event -s 2 | grep Seq
  Sequence:     3

A log of many events is cut to the latest fifty, whatever the library says.

  $ ktsim event 9 16 -n 60
  $ ktsim fault KT_EVT_GetEvent 0 --kind count
  $ kt event | grep -c Seq
  50

The same events in words that the adapter's library chose.

  $ ktsim event 2 0 -d 3 -s 5
  $ kt message | head -6
  Current AdapterID:0
  
  Sequence:     64
  Time:         Mon Jan  5 08:00:00 2026
  Level:        [MAJOR]
  Description: Physical disk 3 is plugged out
