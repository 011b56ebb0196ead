#include "tests/seam/seam.h"

namespace {
struct Aes : SeamTest {
    Aes() {
        for (auto& port : seam.aesOverview.aes_port)
            port = {255, 255};
        gAdapterInfo[0].MaxAESEntry = 3;
    }
};
std::string padded(std::string text) {
    text.resize(32);
    return text;
}
std::string entryRecord(char entry, char keyLength, const std::string& key, const std::string& password) {
    return std::string{entry, keyLength, 0, 0, 0, 0, 0, 0} + padded(key) + padded(password);
}
std::string sentLast() {
    return seam.calls.empty() ? "" : seam.sent[seam.calls.back().substr(0, seam.calls.back().find(' '))];
}
} // namespace

TEST_F(Aes, TakesSecretsOfThirtyTwoCharactersQuotedOrNot) {
    const std::string password = "-n : password of aes should be no more than 32 characters\n";
    const std::string key = "-k : length of AES key should be no more than 32 characters\n";
    for (int length : {1, 31, 32, 33, 34, 100}) {
        const std::string content(static_cast<size_t>(length), 'x');
        const std::tuple<const char*, std::string, const char*, std::string> cases[] = {
            {"aesop -o verifykey -e 1 -k k -p ", password, "\nVerify key on entry 1 returned successfully.\n",
             entryRecord(1, 32, "k", content)},
            {"aesop -o changepwd -e 1 -p p -w ", password,
             "\nAES change password of entry 1 is returned successfully.\n", entryRecord(1, 0, content, "p")},
            {"aesentry -o setcfg -i 1 -p p -k ", key, "", entryRecord(1, static_cast<char>(length), content, "p")}};
        for (const auto& [words, tooLong, done, sent] : cases) {
            for (const std::string& typed : {content, '"' + content + '"'}) {
                seam = {};
                expect(words + typed, length > 32 ? tooLong : done, length > 32 ? 1 : 0);
                EXPECT_EQ(length > 32 ? "" : sent, sentLast());
            }
        }
    }
    expect("aesop -o verifykey -e 1 -p p -k \"\"", "-k : key can not be NULL\n", 1);
    EXPECT_EQ(0, run("aesop -o verifykey -e 1 -p \"\" -k k").result);
}

TEST_F(Aes, HandsOverRecordsAndPassesStatusesOn) {
    // The records of port 3: encrypting, and with entry 2.
    const std::string encrypting("\3\1\0\0\0\0\0\0", 8), mounted("\3\2\0\0\0\0\0\0", 8);
    const std::tuple<const char*, std::string, std::string, const char*, std::string> cases[] = {
        {"aesentry -o getcfg -i 2 -p pw", "KT_AES_GetEntryConfig " + padded("pw"), entryRecord(2, 0, "", "pw"),
         "Entry ID:                2\nAES key length:          32\n", "\nGet configure of AES entry 2 failed (@).\n"},
        {"aesport -o set -i 3 --aesoff --aeson", "KT_AES_SetPortConfig", encrypting,
         "\nSet configure of AES port 3 is returned successfully.\n", "\nSet configure of AES port 3 failed (@).\n"},
        {"aesport -o mount -i 3 -e 2 -p pw", "KT_AES_SetLink", mounted + entryRecord(2, 0, "", "pw"),
         "\nLink aes port 3 to entry 2 is returned successfully.\n", "\nFailed to link aes port 3 to entry 2 (@)\n"},
    };
    for (auto [line, call, sent, good, bad] : cases) {
        seam.statuses.clear();
        expect(line, good);
        EXPECT_EQ(call, seam.calls.back()) << line;
        EXPECT_EQ(sent, sentLast()) << line;
        seam.statuses[call] = 248;
        expect(line, bad.replace(bad.find('@'), 1, "error 248: password mismatch"), 248);
    }
}

TEST_F(Aes, LeavesNoSecretInTheWords) {
    const char* lines[] = {
        "aesop -o verifykey -e 1 -psecret --oldpassword=secret -k \"secret\"",
        "aesop -o verifykey -e x -p secret", // refused before the password is looked at
        "aesop -p secret -p secret secret",
    };
    for (const char* line : lines) {
        Outcome outcome = run(line);
        EXPECT_FALSE(has(outcome.words, "secret")) << line;
        EXPECT_FALSE(has(outcome.printed, "secret")) << line;
    }
    for (const char* line : {"aesport --p=secret", "aesport --pasword=secret", "aesport --aeson=secret"}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(1, run(line).result) << line;
        EXPECT_EQ("aesport: unknown option, or an option without its value\n", testing::internal::GetCapturedStderr());
    }
    Outcome port = run("aesport -o mount -i 1 -e 1 -p secret");
    Outcome entry = run("aesentry -o getcfg -i 1 -p secret");
    EXPECT_FALSE(has((port.words + entry.words), "secret"));
}

TEST_F(Aes, ListsEntriesWithTheirPorts) {
    seam.aesOverview.entry[1] = 1;
    seam.aesOverview.entry[5] = 1; // beyond what the adapter counts, and there all the same
    seam.aesOverview.aes_port[0] = {0, 1};
    seam.aesOverview.aes_port[1] = {1, 255};
    seam.aesOverview.aes_port[2] = {2, 1};
    const std::map<std::string, std::string> texts = {{"e", "Entry ID:                "},
                                                      {"no", "Has Key:                 No"},
                                                      {"yes", "Has Key:                 Yes"},
                                                      {"p", "Port ID:                 "}};
    expectSteps(texts, "aesentry -o GETINFO => $e0\\n$no\\n$e1\\n$yes\\n$p0\\n$p2\\n$e2\\n$no\\n$e5\\n$yes");
    gAdapterInfo[0].MaxAESEntry = 0;
    seam.aesOverview.aes_port[3] = {3, 7};
    expectSteps(texts, "aesentry -o getinfo => $e1\\n$yes\\n$p0\\n$p2\\n$e5\\n$yes\\n$e7\\n$no\\n$p3");
    seam.aesOverview.aes_port[3] = {255, 255};
    gAdapterInfo[0].MaxAESEntry = 3;
    seam.statuses["KT_AES_OnlyGetEntryInfo"] = 241;
    expect("aesport -o dismount -i 0", "\nGet configure of AES entry 1 failed (error 241: entry out of range).\n", 241);
    expect("aesentry -o getinfo", "\nGet configure of AES entry 0 failed (error 241: entry out of range).\n", 241);
    seam.statuses["KT_AES_OnlyGetPortInfo"] = 242;
    EXPECT_EQ(242, run("aesport -o set -i 3 --aeson").result);
    EXPECT_EQ("KT_AES_OnlyGetPortInfo 3", seam.calls.back());
    seam.aesOverview = {{{255, 255}, {255, 255}, {255, 255}, {255, 255}}, {}, {}};
    gAdapterInfo[0].MaxAESEntry = 0;
    expect("aesentry -o getinfo", "\nNo entry is found\n");
    expect("aesport -o getcfg", "\nNo port is found\n");
}
