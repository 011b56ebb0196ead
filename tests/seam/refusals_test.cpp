// What is refused with a message before the library is called.
#include "tests/seam/activity.h"

namespace {

const std::string ofBothSets = R"(
migrate {-l 2 -l 2|-a size -a size -l 2|-l 2 -r 5 -r 6|-l 2 -q 2 -q 3|-d 1 -d 2} => 
)";

struct Refusals : SeamTest {
    Refusals() {
        layOut();
        opterr = 0; // what the scanner says on standard error is not looked at
    }
};

TEST_F(Refusals, OfAnAdapterWithoutArrays) {
    gAdapterInfo[0].StripeSizeSupported = 3;
    expectRows(ofBothSets + R"(
{report|delete|info -o vd|enc -o enc} -i 255 => -i : invalid id 255
{import -i 0x100000000000000000|delete -o vd -i 4294967299|wipe -d 99999999999|enc -o enc -i 99999999999} => -i : invalid id 2147483647
{enc -o enc -i 65536|wipe -d 300} => -i : invalid id {}
rebuild -l 2 -d 8,9 => -d: Only One PD is needed for rebuilding!
set -o vd -i 3 -w auto => -w : invalid write policy 'auto'
{create|set -o vd -i 3} -n 12345678901 => -n : length of name should be no more than 10 characters
{create -r 0 -d 1,2 -n My-VD|set -o vd -i 3 -n a-b} => -n, name must be numeric, character, space or underline. Now is {}
create -r 0 -d 3,3 => RAID0 needs at least 2 PD.
{create -q 300|maxcreatesize -q \t} -r 6 -d 1,2,3 => Number of parity disks should be at least 2 and less than 3.
create -r 5 -d 1,2,3 -q {3|300} =19> RAID mode RAID5 don't support the setting of parity disks.
create -r 60 -d 1,2,3,4,5,6 -q {3|5} => RAID60 need even number of parity disks between 4 and 6.
maxcreatesize -r 60 -d 1,2,3,4,5,6 -q 300 => # of parity disks (300) should be less than # of total disks (6).
aesop -o CHANGEPWD => aesop: option -e is required\naesop: option -p is required\naesop: option -w is required
aesentry -o getcfg => aesentry: option -i is required\naesentry: option -p is required
aesentry -o setcfg -p p -i 1 => aesentry: option -k is required
aesport -o {set|dismount} => aesport: option -i is required
aesport -o set -i 1 => \n --aeson or --aesoff is required for set AES configuration.
aesport -o mount -i 1 -e 2 => \n  port id ,entry id, password and mount AES must be set.
forceonline -i 3 -p {266|0} => -p : invalid percentage '{}', available percentage include 10 20 30 40 50 60 70 80 90 100
nvsram -s 5 => nvsram: option -a is required\n\nlong help
nvsram -a write -s 4294967295 -c 2 => -c : invalid byte counts '2'
nvsram -p {0x100|0x1000000000000005A} => -p: hex pattern should be 8 bit 
register -a write -d 2 => -v is must in the write register command.
register -d 2 => address must be 0 or 1. Now is -d 2.
register -d 99999999999 => address must be 0 or 1. Now is -d 2147483647.
info -i 300 -i 300 => info: option -o is required\n-i : invalid id 300\nDuplicated option specified.
enc -o ele -e {255|256} => -e: element id should be less than 255
locate -a blink => -a: invalid action 'blink'\nmissing PD id
ssd -d 11 -t long => ssd: option -t belongs to -a start only
ssd -a start => ssd: option -d is required
ssdop -d 11 => ssdop: option -f is required
ssdop -d 11 -a version -f now.bin => ssdop: option -f does not belong to -a version
ssdop -d 11 -a version -m now => ssdop: option -m does not belong to -a version
{aesport -o set -i 1 --aeson --aeson|backup_cfg -f a -f b|backup_cfg -t phy -t phy|restore_cfg --autoset -a x|restore_cfg -r x --raid} => Duplicated option specified.
{backup_cfg|restore_cfg} -i 1 => 
check -f a -f b =2> Duplicated option specified.
check -f a -t x =2> -t : invalid type 'x'
)");
}

TEST_F(Refusals, OfAnAdapterWithArrays) {
    arrayBasedRaid = true;
    expectRows(ofBothSets + R"(
rebuild -l 2 -d {,9,y|8,,9} => -d:invalid PD IDs {}
migrate -l 2 -r 6 => No target disk is specified.
create -o array => create: option -r is required\ncreate: option -d is required
{create|set -o vd -i 3} -n 12345678901234567 => -n : length of name should be no more than 16 characters
create -o auto -n a.b => -n, name must be numeric, character, space or underline. Now is a.b
create -o array -r 5 -d 1,2,3 -a 0 => -a option is not used for creating array
create -o array -r 6 -d 0,1,2,3 -q 3 -n x => Number of parity disks for RAID6 can not exceed half of total disks
create -o array -r 60 -d 0,1,2,3,4,5,6,7 -q {3|5} -n x => Number of parity disks for RAID60 should be even and between 4 & 6
create -o array -d 1 -r 0 -q 1 =19> RAID mode RAID0 don't support the setting of parity disks.
assign -o array => Array id is not specified
set -o pd -i 3 -n name => set: option -n does not belong to -o pd
set -o hba --smart on => set: option --smart does not belong to -o hba
set -o vd -i 3 -n "" => -n : the name is empty
set -o hba --mprate {101|\t|4294967297} => --mprate : invalid value '{}', should be 0 to 100
set -o hba --copyback 1 => --copyback : invalid value '1', should be on or off
set -o bbu --power stop => --power is not supported on adapter 0.
)");
}

TEST_F(Refusals, OfAnAdapterThatCanDoNothing) {
    gAdapterInfo[0].Features = 0;
    gAdapterInfo[0].LogicalDriverMode = KT_MODE_RAID5;
    gAdapterInfo[0].AdvancedFeatures =
        KT_ADV_NO_SMART | KT_ADV_NO_WRITE_CACHE | KT_ADV_NO_READ_CACHE | KT_ADV_NO_ROUNDING;
    expectRows(R"(
mp -d 2 => Media patrol is not supported.
create -i Background => -i : initialization mode 'Background' is not supported
{create|set -o vd -i 0} -c on => VD cache is not supported on adapter 0.
{create|set -o vd -i 0} -w wb => VD write cache is not supported on adapter 0.
set -o hba {--alarm|--copyback|--pollsmart|--consolidation} on => {} is not supported on adapter 0.
set -o hba {--mprate|--bgarate} 1 => {} is not supported on adapter 0.
set -o hba --mute => --mute is not supported on adapter 0.
set -o pd -i 0 --smart on => --smart is not supported on adapter 0.
)");
    arrayBasedRaid = true;
    expectRows(R"(
migrate -l 2 -l 2 => Migration is not supported on adapter 0.
create -i background => -i : initialization mode 'background' is not supported
create -g 1 => giga byte rounding scheme is not support
)");
}

} // namespace
