#include "ktsetup/historyLine.h"

#include <gtest/gtest.h>

TEST(HistoryLine, LosesTheSecretsAndNothingElse) {
    const std::tuple<const char*, const char*> cases[] = {
        {"aesop -o changePwd -e 0 -p new -w old", "aesop -o changePwd -e 0 -p  -w "},
        {"AesOp\t-o verifyKey -pnew --key=\"my key\" -e 1", "AesOp\t-o verifyKey -p --key= -e 1"},
        {"aesent --password \"two words\" --operation setcfg -k x", "aesent --password  --operation setcfg -k "},
        {"  aesport -hp s --oldpass s --ke s", "  aesport -hp  --oldpass  --ke "},
        {"aesop -ochangepwd -e 1 -i 2", "aesop -ochangepwd -e 1 -i 2"},
        {"aesop --portid 2 --option x", "aesop --portid 2 --option x"},
        {"forceonline -i 3 -p 50", "forceonline -i 3 -p "},
        {"aesopp -p s", "aesopp -p "},
        {"aesop -p \"s -w t", "aesop -p "},
        {"aesop -p", "aesop -p"},
        {"create -o vd -p ra -w wb -k x", "create -o vd -p ra -w wb -k x"},
        {"flash -p pd", "flash -p pd"},
        {"", ""},
        {" ", " "},
    };
    for (const auto& [typed, kept] : cases)
        EXPECT_EQ(kept, withoutSecrets(typed)) << typed;
}
