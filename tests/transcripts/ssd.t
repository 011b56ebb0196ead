Solid-state disks: their health, their self-tests, their microcode.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ refused() { kt "$@"; echo "= $?"; }
  $ kt ssd; kt 1 ssd | sed 1d
  PD    Model                    Microcode Life left Written   Power on  Temp  Self-test
  7     Petrel PX800G SAS SSD    PX20      N/A       N/A       N/A       N/A   never run
  8     Petrel PX800G SAS SSD    PX20      N/A       N/A       N/A       N/A   never run
  11    Petrel PS480G SSD        PS41C     100 %     6.0 TB    12104 h   36 C  never run
  2     Petrel PS240G SSD        PS41C     100 %     3.0 TB    12032 h   34 C  never run

A self-test takes its time.

  $ kt ssd -d 11 -a status
  hard disk id:            11
  self-test:               never run
  $ kt ssd -d 11 -a start; ktsim clock advance 1m; kt ssd -d 11 -a STATUS | sed 1d | joined
  The short self-test of PD 11 is started.
  self-test:               running | progress:                50 %
  $ for i in 1 2; do refused ssd -d 11 --action stop; done
  The self-test of PD 11 is stopped.
  = 0
  
  Unable to stop the self-test of PD 11 (error 27: Quillon diagnostic status phase returns command error)
  = 27

Microcode comes page by page, at once or for the next start, and is asked about.

  $ lab default; ktsim image microcode now.bin -m "Petrel PS480G SSD" -v PS50A --size 400
  $ for answer in n y; do echo $answer | kt ssdop -d 11 -f now.bin; done; calls | grep -c Download
  The disk may be lost when the download fails. Do you want to download 'now.bin' to PD 11? (y or n)
  The disk may be lost when the download fails. Do you want to download 'now.bin' to PD 11? (y or n)
  page 0 write to device.
  page 1 write to device.
  page 2 write to device.
  Microcode is downloaded successfully.
  PD 11 is online, its microcode is PS50A.
  3
  $ ktsim image microcode later.bin -m "Petrel PS480G SSD" -v PS51A --size 100
  $ kt ssdop -d 11 -f later.bin -m later --waiveconfirmation | tail -2
  It takes effect at the next power cycle of the disk.
  PD 11 is online, its microcode is PS50A.
  $ kt ssdop -d 7 -f now.bin < /dev/null | head -3
  PD 7 is part of VD 0 (boot).
  VD 0 has running OS in it.
  PD 7 is part of VD 1 (scratch).

What a drive refuses leaves it with the microcode that it had; nothing is tried again.

  $ refused ssdop -d 7 -f now.bin --waiveconfirmation
  page 0 write to device.
  
  Failed to download page 0 of file 'now.bin' to PD 7 (error 166: invalid microcode found).
  PD 7 is online, its microcode is PX20.
  = 166
  $ ktsim fault KT_Download_SSD_Microcode 20 --after 1; : > trace
  $ kt ssdop -d 11 -f now.bin --waiveconfirmation | tail -2; calls | grep -c Download
  Failed to download page 1 of file 'now.bin' to PD 11 (error 20: Link time out).
  PD 11 is online, its microcode is PS50A.
  2
  $ ktsim fault clear; ktsim disk fail 11 -f; kt ssdop -d 11 -f now.bin --waiveconfirmation | tail -2
  Failed to download page 0 of file 'now.bin' to PD 11 (error 20: Link time out).
  PD 11 is offline, its microcode is PS50A.

Files that cannot be microcode, and other refusals, come before the first page.

  $ lab default; : > empty.bin; truncate -s 33553921 huge.bin; mkfifo pipe
  $ for file in empty.bin huge.bin pipe missing; do kt ssdop -d 11 -f $file --waiveconfirmation && echo done; done
  File 'empty.bin' is empty.
  File 'huge.bin' is too large: microcode has at most 33553920 bytes.
  Unable to open file 'pipe', or it is not a regular file.
  Unable to open file 'missing', or it is not a regular file.
  [1]
  $ (refused ssdop -d 3 -f now.bin; calls | grep -c Download) | joined
  PD 3 is not a solid-state disk | = 1 | 0
