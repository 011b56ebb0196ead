#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"

#include <iterator>

static void printState(KT_U8 status) {
    static const char* const words[] = {"good", "offline", "rebuilding", "copying back"};
    if (status < std::size(words)) {
        printStr(REPORT_WIDTH, "Status:", words[status]);
    } else {
        out("%-*s unknown (%d)\n", REPORT_WIDTH, "Status:", status);
    }
}

void Blk_PrintInfo(const _Block_Info* block) {
    printNum(REPORT_WIDTH, "Block ID:", block->ID);
    printNum(REPORT_WIDTH, "PD ID:", block->HDID);
    if (block->LDID == KT_BLOCK_FREE) {
        printStr(REPORT_WIDTH, "VD ID:", "free");
    } else {
        printNum(REPORT_WIDTH, "VD ID:", block->LDID);
    }
    printState(block->Status);
    printNum(REPORT_WIDTH, "Sector size:", block->BlockSize);
    out("%-*s %llu\n", REPORT_WIDTH, "Start LBA:", static_cast<unsigned long long>(block->StartLBA));
    out("%-*s %llu sectors\n", REPORT_WIDTH, "Size:", static_cast<unsigned long long>(block->Size));
}

KT_U8 getBlkInfo(KT_U16 id) {
    static const ListingWords words = {"No block disk is found.\n",
                                       "\nBlock Disk Information\n-------------------------\n", "Total # of block:"};
    ListEnd end = printListing<_Block_Info>(KT_BLK_GetInfo, id, words, Blk_PrintInfo);
    if (!refused(end)) return end.status;
    if (id == ALL_ITEMS) {
        out("\nUnable to get info of block (error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else {
        out("\nUnable to get info of block %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    }
    return end.status;
}
