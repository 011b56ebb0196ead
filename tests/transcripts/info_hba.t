The report of an adapter; all its values are compared with what ktreport says.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt info -o HBA -i 0 | sed '/^Sub vendor/,/^BIOS/d; / Port [1-6] /d; /^Rebuild:/,/^Maximum VD in/d; /^[ABF][uoi].* image health/d'
  Adapter ID:                          0
  Product:                             1fa4-4780
  Firmware version:                    4.1.15.2108
  Boot loader version:                 2.1.0.1009
  # of ports:                          8
      Port 0 SAS address : 500A1F4000100000
      Port 7 SAS address : 500A1F4000100007
  Serial number:                       KS260100004711
  Model:                               Tarn R8i
  Buzzer:                              Supported
  Supported port type:                 SATA SAS 
  Supported RAID mode:                 RAID0 RAID1 RAID5 RAID6 RAID10 RAID50 RAID60 
  Maximum disk in one VD:              32
  Maximum parity disk for RAID6:       3
  PM:                                  Not supported
  Expander:                            Supported
  Max total blocks:                    1024
  Features:                            rebuild,background init,synchronize,migration,media patrol,foreground init,copy back,only same type hd for create
  Advanced features:                   event sense code,big stripe,flash bios,bbu,config in flash,cpu efficiency,ses2,module consolidate,image health,vd write cache,vd read cache,smart,rounding,hd set free,hd write cache,set spare,hot plug,ata pass through,access register,flash predata,raw update
  Max buffer size:                     64
  Stripe size supported:               16K 32K 64K 128K 256K 512K 1024K 
  Image health:                        Healthy
  HBA info image health:               Healthy
  
An adapter that cannot be read does not hide the others.

  $ ktsim fault KT_Adapter_GetInfo 5 --adapter 0
  $ kt info -o hba | head -n 4
  
  Could not get info for Adapter ID 0 (error 5: Data out of range)
  Adapter ID:                          1
  Product:                             1fa4-4740
  $ for i in 0 2; do kt info -o hba -i $i || echo "= $?"; done
  
  Could not get info for Adapter ID 0 (error 5: Data out of range)
  = 5
  
  Unable to get info of Adapter 2 (error 13: Invalid adapter id)
  = 13

The link is there when it has a speed.

  $ for speed in 0 1; do echo "{\"adapters\": [{\"MaxSpeed\": $speed}]}" > speed; lab speed; kt info -o hba | grep PCIe; done
  PCIe status:                         N/A
  Max PCIe speed:                      2.5Gb/s
  Current PCIe speed:                  8Gb/s
  Max PCIe link:                       8X
  Current PCIe link:                   8X
