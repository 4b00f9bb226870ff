// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libdict/dict.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#include "lib/liblog/logging.h"
#include "tests/support/capture.h"
#include "tests/support/dict_text.h"
#include "tests/support/failing_alloc.h"

namespace {

TEST(Dict, KeepsCopiesUnderKeys) {
  const owned_dict dict = own(new_dict());
  char value[] = "one";
  const void* const stored = dict_add_key(dict.get(), "key", value, sizeof value);
  value[0] = 'X';
  EXPECT_EQ(stored, dict_value_for_key(dict.get(), "key", nullptr));
  EXPECT_EQ(value_of(dict.get(), "key"), zero_ended("one"));

  dict_add_key(dict.get(), "key", "second", 6);
  EXPECT_EQ(value_of(dict.get(), "key"), "second");
  EXPECT_EQ(dict->entries, 1U);

  EXPECT_NE(dict_add_key(dict.get(), "empty", nullptr, 0), nullptr);
  EXPECT_EQ(value_of(dict.get(), "empty"), "");
  EXPECT_EQ(dict_has_key(dict.get(), "empty"), 1);
  EXPECT_EQ(dict_has_key(dict.get(), "ke"), 0);
  EXPECT_EQ(dict_value_for_key(dict.get(), "Key", nullptr), nullptr);
  delete_dict(nullptr);
}

TEST(Dict, KeysHashIntoTheirBuckets) {
  const std::pair<const char*, size_t> cases[] = {{"", 0},     {"pretty", 11}, {"a", 7},
                                                  {"\xFF", 7}, {"\x80", 0},    {"\xFE\x01", 0}};
  for (const auto& [key, bucket] : cases) {
    const owned_dict dict = own(new_dict());
    dict_add_key(dict.get(), key, "v", 1);
    for (size_t i = 0; i < kDictBuckets; i++) {
      EXPECT_EQ(dict->kvtable[i].first != nullptr, i == bucket) << key << ' ' << i;
    }
    EXPECT_EQ(value_of(dict.get(), key), "v");
  }
}

TEST(Dict, ARemovedKeyStaysCountedAndIsWarnedOf) {
  set_loglevel(2);
  dictionary* const dict = new_dict();
  dict_add_key(dict, "a", "x", 1);
  dict_remove_key(dict, "b");
  dict_remove_key(dict, "a");
  EXPECT_EQ(dict_has_key(dict, "a"), 0);
  EXPECT_EQ(dict->entries, 1U);
  EXPECT_EQ(capture([&] { delete_dict(dict); }).err,
            "[W] lib/libdict/dict delete_dict(#): dict->entries non-zero on free\n");
  set_loglevel(1);
}

TEST(Dict, TheSerialisedFormIsTheRecordsInBucketOrder) {
  const owned_dict dict = own(new_dict());
  EXPECT_EQ(serialized(dict.get()), "");
  dict_add_key(dict.get(), "a", "x", 2);
  EXPECT_EQ(serialized(dict.get()), record(std::string("a\0x\0", 4), 2));

  // "q" shares the bucket of "a" and stands before it, being newer; "" is in bucket 0.
  dict_add_key(dict.get(), "q", "", 0);
  dict_add_key(dict.get(), "", "z", 1);
  const std::string bytes = record(std::string("\0z", 2), 1) + record(zero_ended("q"), 2) +
                            record(std::string("a\0x\0", 4), 2);
  EXPECT_EQ(serialized(dict.get()), bytes);

  const owned_dict copy = own(dict_deserialize(bytes.data(), bytes.size()));
  EXPECT_EQ(copy->entries, 3U);
  EXPECT_EQ(value_of(copy.get(), "a"), zero_ended("x"));
  EXPECT_EQ(value_of(copy.get(), "q"), "");
  EXPECT_EQ(value_of(copy.get(), ""), "z");
}

TEST(Dict, AViewPointsIntoItsBuffer) {
  static int freed;
  freed = 0;
  // The records stand unaligned, and the second "a" takes the place of the first.
  std::string bytes = "?" + record(std::string("a\0xyz", 5), 2) + record(zero_ended("a") + "w", 2);
  dictionary* const dict =
      dict_for_buf(bytes.data() + 1, bytes.size() - 1, [](kvpair*) { freed++; });
  ASSERT_NE(dict, nullptr);
  EXPECT_EQ(dict->entries, 1U);
  EXPECT_EQ(freed, 1);
  EXPECT_EQ(dict_value_for_key(dict, "a", nullptr), &bytes.back());
  delete_dict(dict);
  EXPECT_EQ(freed, 2);

  const owned_dict unowned = own(dict_for_buf(bytes.data() + 1, bytes.size() - 1, nullptr));
  EXPECT_EQ(value_of(unowned.get(), "a"), "w");
  EXPECT_EQ(own(dict_for_buf(nullptr, 0, nullptr))->entries, 0U);
}

TEST(Dict, RecordsThatAreNotWholeAreRefused) {
  const std::string good = record(std::string("a\0x", 3), 2);
  const std::string bad[] = {
      u32(100) + u32(2) + std::string(42, 'k'),  // larger than the whole buffer
      record(std::string("a\0", 2), 3),          // the value begins past the end
      record("ab", 2),                           // a key without end
      record("", 0),
      "seven..",
      u32(UINT32_MAX) + u32(UINT32_MAX),
      good + u32(5) + u32(2) + std::string("b\0y", 3),  // fits the whole buffer, not the rest
      good + "1234",
  };
  for (const std::string& bytes : bad) {
    std::vector<char> exact(bytes.begin(), bytes.end());  // reading past it is seen by sanitizers
    const printed text = capture([&] {
      EXPECT_EQ(dict_deserialize(exact.data(), exact.size()), nullptr);
      EXPECT_EQ(dict_for_buf(exact.data(), exact.size(), nullptr), nullptr);
    });
    EXPECT_EQ(text.err,
              "[E] lib/libdict/dict dict_deserialize(#): deserialize sanity check failed\n"
              "[E] lib/libdict/dict dict_for_buf(#): deserialize sanity check failed\n");
  }
}

// The lengths of a record have 32 bits.
TEST(Dict, RefusesWhatItsRecordsCannotHold) {
  const auto message_of = [](size_t size) {
    return capture([&] { EXPECT_EQ(new_kvpair("key", nullptr, size), nullptr); }).err;
  };
  const std::string message =
      "[E] lib/libdict/dict new_kvpair(#): could not allocate new key/value : ";
  EXPECT_EQ(message_of(UINT32_MAX - 3U), message + std::strerror(EOVERFLOW) + "\n");
  fail_allocation_after(0);
  EXPECT_EQ(message_of(UINT32_MAX - 4U), message + std::strerror(ENOMEM) + "\n");
  EXPECT_TRUE(stop_failing_allocations()) << "it was asked for";
}

TEST(Dict, SurvivesEveryFailedAllocation) {
  const std::string no_memory = std::strerror(ENOMEM);
  const std::string prefix = "[E] lib/libdict/dict ";
  const auto fails = [&](int successes, const std::string& message, auto code) {
    fail_allocation_after(successes);
    const printed text = capture([&] { EXPECT_EQ(code(), nullptr); });
    EXPECT_TRUE(stop_failing_allocations());
    EXPECT_EQ(text.err, prefix + message + no_memory + "\n");
  };
  const owned_dict dict = own(new_dict());
  dict_add_key(dict.get(), "a", "x", 1);
  const std::string before = serialized(dict.get());
  const std::string no_pair = "new_kvpair(#): could not allocate new key/value : ";
  const std::string no_manager = "new_kvpair_mgr(#): could not allocate new key/value mgr: ";
  const auto add = [&] { return dict_add_key(dict.get(), "a", "longer", 6); };
  const auto read = [&] { return dict_deserialize(before.data(), before.size()); };
  fails(0, "new_dict(#): could not allocate new dictionary : ", new_dict);
  fails(0, no_pair, add);
  fails(1, no_manager, add);
  fails(0, "dict_serialize(#): could not allocate serialized buffer : ", [&] {
    return dict_serialize(dict.get(), nullptr);
  });
  const auto view = [&, bytes = before]() mutable {
    return dict_for_buf(bytes.data(), bytes.size(), nullptr);
  };
  fails(0, "new_dict(#): could not allocate new dictionary : ", read);
  fails(0, "new_dict(#): could not allocate new dictionary : ", view);
  fails(1, no_manager, view);
  fails(1, no_pair, read);
  fails(2, no_manager, read);
  EXPECT_EQ(serialized(dict.get()), before);
}

}  // namespace
