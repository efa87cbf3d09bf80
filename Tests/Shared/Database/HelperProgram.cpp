// A program that the tests start beside themselves: locks the database named by its argument for
// writing, says "locked" and holds the lock until it is ended.

#include <unistd.h>

#include <cstdio>

#include "Shared/External/fmdb/FMDatabase.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const auto database = FMDatabase_Time::databaseWithPath(argv[1]);
  if (!database->open() || !database->beginTransaction()) return 1;
  std::puts("locked");
  std::fflush(stdout);
  while (true)
    pause();
}
