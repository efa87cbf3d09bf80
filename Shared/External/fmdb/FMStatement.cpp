#include "Shared/External/fmdb/FMStatement.h"

#include "Shared/External/fmdb/FMConnection.h"

FMStatement_Time::FMStatement_Time(std::shared_ptr<FMConnection> connection,
                                   sqlite3_stmt* statement)
    : connection_(std::move(connection)), statement_(statement) {}

int FMStatement_Time::reset() { return sqlite3_reset(statement_.get()); }
