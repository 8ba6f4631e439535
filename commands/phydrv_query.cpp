// Options and query of the drive listings.
#include "commands/phydrv_query.h"

#include "commands/options.h"

int parseListingArgs(int wordCount, char** words, ListingArgs* listing) {
    const Option options[] = {
        flagOption("-v", &listing->verbose),
        driveOption("-p", "physical drive ID", &listing->first, &listing->count),
        numberOption("-i", "controller ID", &listing->controller, Result::badId),
        countOption("-c", "physical drive count", &listing->count, kMaxDrives),
    };
    return readOptions(wordCount, words, firstOption(wordCount, words), options,
                       "Invalid parameters defined");
}

bool queryDrives(const ListingArgs& listing, DriveReply* reply) {
    const PhyDrvQuery query = {listing.first, listing.count, kAllDrives, {}};
    *reply = {};
    q5_getPhyDrvInfo(hbaAddress(listing.controller), 0, &query, reply, sizeof *reply);
    return !records(*reply).empty();
}
