An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"
  $ lab default

## A bad image

Before an update, save the image that works.

  $ kt flash -a backup -t firmware -f good.bin | tail -1
  Flash command is returned successfully.
  $ ktsim image make new.bin --version 4.2.0.1 --damage data
  $ kt flash -a update -t firmware -f new.bin
  page 0 write to device.
  page 1 write to device.
  page 2 write to device.
  
  Failed to update file 'new.bin', error 184: Invalid flash buffer data
  [184]

The adapter has looked at the whole image before taking it, and keeps the one that it had.

  $ kt info -o hba -i 0 | grep -e '^Firmware version' -e '^Firmware image'
  Firmware version:                    4.1.15.2108
  Firmware image health:               Healthy

Get the file again, and compare its version and checksum with what the maker says.

  $ kt flash -a version -t firmware -f new.bin
  major version:     4
  minor version:     2
  revision number:   0
  build number:      1
  Sub Verndor ID:    1fa4

  $ yes | kt flash -a erase -t firmware | tail -1
  Erase bios command is returned successfully.

An image that is damaged or gone, as this one that was erased, shows in the adapter's health. Do not restart the machine:
as long as the adapter runs, it can be given an image. Write back the one that worked.

  $ kt info -o hba -i 0 | grep -e '^Image health' -e '^Firmware image'
  Image health:                        Unhealthy
  Firmware image health:               Unhealthy
  $ kt flash -a update -t firmware -f good.bin | tail -1
  Flash command is returned successfully.
  $ kt info -o hba -i 0 | grep -e '^Firmware version' -e '^Image health'
  Firmware version:                    4.1.15.2108
  Image health:                        Healthy
