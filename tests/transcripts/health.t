The health of disks: SMART thresholds, return status and attributes.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt status -o pd -i 3; kt status -o hd | grep -c false
  hard disk id:              3
  SMART threshold exceeded:  false
  13
  $ kt smart -p 3
  SMART STATUS RETURN: OK.
  
  Smart Info
  ID\tAttribute Name\t\tCurrent\tWorst\tThreshhold\tRawValue\tStatus (esc)
  01\tRaw_Read_Error_Rate \t100\t100\t6       \t000000000000\tOK (esc)
  03\tSpin_Up_Time        \t97\t97\t0       \t000000000000\tOK (esc)
  04\tStart_Stop_Count    \t100\t100\t20      \t000000000029\tOK (esc)
  05\tReallocated_Sectors \t100\t100\t36      \t000000000000\tOK (esc)
  07\tSeek_Error_Rate     \t87\t87\t30      \t000000000000\tOK (esc)
  09\tPower_On_Hours      \t86\t86\t0       \t000000003740\tOK (esc)
  0A\tSpin_Retry_Count    \t100\t100\t97      \t000000000000\tOK (esc)
  0C\tPower_Cycle_Count   \t100\t100\t20      \t000000000029\tOK (esc)
  BB\tReported_Uncorrect  \t100\t100\t0       \t000000000000\tOK (esc)
  BE\tAirflow_Temperature \t70\t64\t45      \t00000000001E\tOK (esc)
  C2\tTemperature_Celsius \t70\t64\t0       \t00000000001E\tOK (esc)
  C5\tPending_Sectors     \t100\t100\t0       \t000000000000\tOK (esc)
  C6\tOffline_Uncorrect   \t100\t100\t0       \t000000000000\tOK (esc)
  C7\tUDMA_CRC_Error_Count\t200\t200\t0       \t000000000000\tOK (esc)
  $ kt smart -p 0; lab troubled; kt status -o pd | grep -B1 true
  SAS PD 0 has not SMART information
  hard disk id:              12
  SMART threshold exceeded:  true
  $ kt 1 smart -p 8 | grep -e STATUS -e now
  SMART STATUS RETURN: NotOK.
  05\tReallocated_Sectors \t36\t36\t36      \t000000000200\tFailing now (esc)

The status of disks comes 128 records at a time, or as many as the adapter's buffer holds.

  $ ktsim create --force --lab - > /dev/null << 'END'
  > {"adapters": [{"type": "array-based", "MaxHD_Ext": 300, "disks": [{"count": 300}]},
  >               {"type": "array-based", "MaxBufferSize": 1, "MaxHD_Ext": 300, "disks": [{"count": 300}]},
  >               {"type": "array-based"}]}
  > END
  $ for a in 0 1 2; do kt $a status -o pd > /dev/null; done
  $ calls | grep -o 'KT_PD_GetSmartStatus.*' | cut -c1-42
  KT_PD_GetSmartStatus a=0 request=000100008
  KT_PD_GetSmartStatus a=0 request=000100008
  KT_PD_GetSmartStatus a=0 request=000180008
  KT_PD_GetSmartStatus a=0 request=000100018
  KT_PD_GetSmartStatus a=1 request=000100007
  KT_PD_GetSmartStatus a=1 request=00017e007
  KT_PD_GetSmartStatus a=1 request=0001fc007
  KT_PD_GetSmartStatus a=2 request=000100008
