#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <ravelin/containers/cls_data_column.hpp>
#include <ravelin/containers/detail/keyed_collection.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace ravelin {
namespace {

std::vector<int32_t> itemsOf(const KeyedCollection& collection) {
  std::vector<int32_t> items;
  collection.forEach(
      [&](const Variant& item, StringView, bool) { items.push_back(item.asLong()); });
  return items;
}

TEST(KeyedCollection, PositionsAndKeysThroughAddsAndRemovals) {
  KeyedCollection collection;
  collection.add(Variant(10), u"Alpha");
  collection.add(Variant(20));
  collection.add(Variant(30), u"\u00c7a");  // Ça
  collection.add(Variant(40), u"");

  EXPECT_EQ(collection.count(), 4);
  EXPECT_EQ(collection.item(u"ALPHA"), Variant(10));
  EXPECT_EQ(collection.item(u"\u00e7A"), Variant(30));  // folded beyond ASCII
  EXPECT_EQ(collection.item(u""), Variant(40));         // an empty text is a key like any other
  EXPECT_FALSE(collection.hasKey(2));
  EXPECT_EQ(collection.keyAt(1), u"Alpha");  // kept as it was given

  collection.remove(u"alpha");
  EXPECT_EQ(itemsOf(collection), (std::vector<int32_t>{20, 30, 40}));
  EXPECT_EQ(collection.positionOf(u"\u00c7A"), 2);
  collection.remove(1);
  EXPECT_EQ(collection.item(1), Variant(30));
  EXPECT_EQ(collection.item(u"\u00c7a"), Variant(30));
  // A removed key can be used again.
  collection.add(Variant(50), u"ALPHA");
  EXPECT_EQ(collection.item(3), Variant(50));
}

TEST(KeyedCollection, FailuresRaiseTheRuntimeErrorsAndChangeNothing) {
  KeyedCollection collection;
  collection.add(Variant(1), u"k");
  collection.add(Variant(2), u"m");
  struct Row {
    const char* what;
    std::function<void()> action;
    int number;
  };
  const Row rows[] = {
      {"duplicate key, other case", [&] { collection.add(Variant(3), u"K"); }, 457},
      {"missing key", [&] { collection.item(u"x"); }, 5},
      {"remove missing key", [&] { collection.remove(u"x"); }, 5},
      {"position 0", [&] { collection.item(0); }, 9},
      {"position past the end", [&] { collection.remove(3); }, 9},
      {"text address is a key", [&] { collection.itemAt(Variant(u"2")); }, 5},
      {"Null address", [&] { collection.itemAt(Variant::null()); }, 94},
      {"object address", [&] { collection.itemAt(Variant::nothing()); }, 13},
      {"address past Long", [&] { collection.itemAt(Variant(3e10)); }, 6},
      {"key of a bad position", [&] { collection.keyAt(-1); }, 9},
      {"True is position -1", [&] { collection.itemAt(Variant(true)); }, 9},
      {"remove by Null", [&] { collection.removeAt(Variant::null()); }, 94},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(errorNumberOf(row.action), row.number);
    EXPECT_EQ(itemsOf(collection), (std::vector<int32_t>{1, 2}));
  }
  // A number is a position as CLng reads it: 1.5 and 2.5 both round to 2.
  EXPECT_EQ(collection.itemAt(Variant(1.5)), Variant(2));
  EXPECT_EQ(collection.itemAt(Variant(2.5)), Variant(2));
  EXPECT_EQ(collection.itemAt(Variant(u"M")), Variant(2));
}

TEST(KeyedCollection, KeyIndexStaysRightAfterManyRemovals) {
  KeyedCollection collection;
  const int total = 3000;
  for (int i = 0; i < total; ++i)
    collection.add(Variant(i), fromAscii("key" + std::to_string(i)));
  // Remove every third item, by key and by position alternately.
  for (int i = total - 1; i >= 0; i -= 3) {
    if (i % 2 == 0) {
      collection.remove(fromAscii("KEY" + std::to_string(i)));
    } else {
      collection.remove(i + 1);
    }
  }
  int32_t position = 0;
  for (int i = 0; i < total; ++i) {
    const String key = fromAscii("key" + std::to_string(i));
    if (i % 3 == (total - 1) % 3) {
      ASSERT_EQ(collection.find(key), nullptr) << i;
      continue;
    }
    ++position;
    ASSERT_EQ(collection.positionOf(key), position);
    ASSERT_EQ(collection.item(position), Variant(i));
    ASSERT_EQ(collection.keyAt(position), key);
  }
  EXPECT_EQ(collection.count(), position);
}

// The contents in position order as "key=item" (an item without a key as "=item"), read back
// every way the collection offers: by position, by key and by walking it.
std::vector<std::string> contentsOf(const KeyedCollection& collection) {
  std::vector<std::string> byPosition;
  for (int32_t position = 1; position <= collection.count(); ++position) {
    const String item = collection.item(position).asString();
    const String key(collection.keyAt(position));
    EXPECT_EQ(collection.hasKey(position), !key.empty()) << position;
    if (collection.hasKey(position)) {
      EXPECT_EQ(collection.positionOf(key), position) << toUtf8(key);
      EXPECT_EQ(collection.item(key).asString(), item) << toUtf8(key);
    }
    byPosition.push_back(toUtf8(key) + "=" + toUtf8(item));
  }
  std::vector<std::string> walked;
  collection.forEach([&](const Variant& item, StringView key, bool) {
    walked.push_back(toUtf8(key) + "=" + toUtf8(item.asString()));
  });
  EXPECT_EQ(walked, byPosition);
  return byPosition;
}

// Runs steps separated by blanks: "+k" adds item k under key k, "*v" adds item v without a key,
// "-k" removes key k, "#p" removes position p, "?p=v" reads item v at position p. A step that
// ends in "!n" must raise error n.
void runSteps(KeyedCollection& collection, const std::string& steps) {
  std::istringstream words(steps);
  std::string step;
  while (words >> step) {
    SCOPED_TRACE(step);
    int expectedError = 0;
    if (const auto bang = step.find('!'); bang != std::string::npos) {
      expectedError = std::stoi(step.substr(bang + 1));
      step.resize(bang);
    }
    const char op = step[0];
    const std::string argument = step.substr(1, step.find('=') - 1);
    const String text = fromAscii(argument);
    const int error = errorNumberOf([&] {
      switch (op) {
        case '+':
          collection.add(Variant(text), StringView(text));
          break;
        case '*':
          collection.add(Variant(text));
          break;
        case '-':
          collection.remove(StringView(text));
          break;
        case '#':
          collection.remove(std::stoi(argument));
          break;
        case '?': {
          const Variant& item = collection.item(std::stoi(argument));
          EXPECT_EQ(toUtf8(item.asString()), step.substr(step.find('=') + 1));
          break;
        }
        default:
          FAIL() << "unknown step";
      }
    });
    EXPECT_EQ(error, expectedError);
  }
}

TEST(KeyedCollection, OrderAndPositionsAfterMixedRemovals) {
  struct Row {
    const char* what;
    std::string steps;
    std::vector<std::string> contents;
  };
  const Row rows[] = {
      {"remove by key, then read by position",
       "+a +b +c +d -b ?1=a ?2=c ?3=d ?4!9",
       {"a=a", "c=c", "d=d"}},
      {"removals by key after positional reads",
       "+a +b +c +d +e -b ?2=c -d ?3=e -a ?1=c",
       {"c=c", "e=e"}},
      {"remove by position past a hole", "+a +b +c +d +e -b #2 ?2=d", {"a=a", "d=d", "e=e"}},
      {"remove by position, then by key", "+a +b +c +d #1 -c ?1=b ?2=d", {"b=b", "d=d"}},
      {"a removed key added again goes last", "+a +b +c -b +B ?3=B", {"a=a", "c=c", "B=B"}},
      {"re-added among holes already read",
       "+a +b +c +d -b ?1=a +B ?4=B -c ?3=B",
       {"a=a", "d=d", "B=B"}},
      {"remove the last item", "+a +b +c -c ?2=b ?3!9 +d ?3=d", {"a=a", "b=b", "d=d"}},
      {"remove the last item behind a hole", "+a +b +c -b -c ?1=a ?2!9 +d ?2=d", {"a=a", "d=d"}},
      {"remove the last by position behind a hole",
       "+a +b +c +d -b ?1=a #3 ?2=c +e ?3=e",
       {"a=a", "c=c", "e=e"}},
      {"remove everything by key, then add", "+a +b +c -b -a -c ?1!9 +B ?1=B +a", {"B=B", "a=a"}},
      {"remove everything from the front, then add", "+a +b +c #1 #1 #1 #1!9 +c ?1=c", {"c=c"}},
      {"remove everything from the end past holes", "+a +b +c +d -b #3 #2 #1 ?1!9 +b", {"b=b"}},
      {"items without keys around holes", "+a *x +b *y -a #2 ?1=x ?2=y", {"=x", "=y"}},
      {"more holes than items, read in between",
       "+a +b +c +d +e +f ?1=a -b ?2=c -d ?3=e -a -c",
       {"e=e", "f=f"}},
      {"failed removals change nothing",
       "+a +b +c -b -b!5 #3!9 #0!9 ?3!9 +A!457 ?2=c",
       {"a=a", "c=c"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    KeyedCollection collection;
    runSteps(collection, row.steps);
    EXPECT_EQ(contentsOf(collection), row.contents);
    // Every key not listed is gone.
    for (const char* key : {"a", "b", "c", "d", "e", "f"}) {
      const bool kept =
          std::any_of(row.contents.begin(), row.contents.end(), [&](const auto& entry) {
            return equalsIgnoreCase(fromAscii(entry.substr(0, entry.find('='))), fromAscii(key));
          });
      EXPECT_EQ(collection.find(fromAscii(key)) != nullptr, kept) << key;
    }
  }
}

// Random adds and removals by key and by position, read back by position and by key after each
// step, against a plain list doing the same.
TEST(KeyedCollection, AgreesWithAPlainListThroughRandomWork) {
  KeyedCollection collection;
  std::vector<std::pair<String, int32_t>> list;
  std::mt19937 random(20261124);
  int32_t next = 0;
  for (int step = 0; step < 20000; ++step) {
    const int32_t count = static_cast<int32_t>(list.size());
    const auto choice = random() % 20;
    if (count == 0 || choice < 10) {
      // Keys repeat now and then, in another case, after their item has gone.
      const int32_t number = static_cast<int32_t>(random() % 600);
      const String key = fromAscii((number % 2 ? "k" : "K") + std::to_string(number));
      const bool taken = std::any_of(list.begin(), list.end(), [&](const auto& entry) {
        return equalsIgnoreCase(entry.first, key);
      });
      ASSERT_EQ(errorNumberOf([&] { collection.add(Variant(next), StringView(key)); }),
                taken ? 457 : 0);
      if (!taken) list.emplace_back(key, next);
      ++next;
    } else if (choice < 15) {
      const std::size_t at = random() % list.size();
      collection.remove(StringView(list[at].first));
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(at));
    } else if (choice < 17) {
      const std::size_t at = random() % list.size();
      collection.remove(static_cast<int32_t>(at) + 1);
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(at));
    } else {
      const std::size_t at = random() % list.size();
      ASSERT_EQ(collection.item(static_cast<int32_t>(at) + 1), Variant(list[at].second)) << step;
      ASSERT_EQ(collection.positionOf(list[at].first), static_cast<int32_t>(at) + 1) << step;
    }
    ASSERT_EQ(collection.count(), static_cast<int32_t>(list.size())) << step;
    if (step % 500 == 0) {
      for (std::size_t at = 0; at < list.size(); ++at) {
        ASSERT_EQ(collection.keyAt(static_cast<int32_t>(at) + 1), list[at].first) << step;
        ASSERT_EQ(collection.item(static_cast<int32_t>(at) + 1), Variant(list[at].second)) << step;
      }
    }
  }
}

// An item that reads the collection when it is released.
class ReadsOnRelease : public clsDataColumn {
 public:
  ReadsOnRelease(const KeyedCollection& collection, std::vector<int32_t>& seen)
      : collection_(collection), seen_(seen) {}
  ~ReadsOnRelease() override {
    seen_.clear();
    collection_.forEach([this](const Variant& item, StringView, bool) {
      seen_.push_back(item.isObject() ? -1 : item.asLong());
    });
  }

 private:
  const KeyedCollection& collection_;
  std::vector<int32_t>& seen_;
};

TEST(KeyedCollection, AnItemIsReleasedOnceTheCollectionIsWhole) {
  struct Row {
    const char* what;
    std::function<void(KeyedCollection&)> remove;
    std::vector<int32_t> seen;
  };
  const Row rows[] = {
      {"by key", [](KeyedCollection& c) { c.remove(u"obj"); }, {1, 3}},
      {"by position", [](KeyedCollection& c) { c.remove(2); }, {1, 3}},
      {"all", [](KeyedCollection& c) { c.clear(); }, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    KeyedCollection collection;
    std::vector<int32_t> seen{99};
    collection.add(Variant(1), u"one");
    collection.add(Variant(ObjectRef(std::make_shared<ReadsOnRelease>(collection, seen))), u"obj");
    collection.add(Variant(3), u"three");
    row.remove(collection);
    EXPECT_EQ(seen, row.seen);
  }
}

}  // namespace
}  // namespace ravelin
