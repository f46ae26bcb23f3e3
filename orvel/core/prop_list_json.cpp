#include "orvel/core/prop_list_json.h"

#include "orvel/core/json_sink.h"
#include "orvel/core/json_source.h"
#include "orvel/core/prop_list_io.h"

namespace teskcore::serialization {

using proplist::PropList;

JSONValue JSONConvert<PropList>::ToJSON(const PropList& list) {
  JSONTreeSink sink;
  Write(sink, list);
  return sink.GetRoot();
}

PropList JSONConvert<PropList>::FromJSON(const JSONValue& value) {
  PropList list;
  Read(JSONTreeSource(&value), list);
  return list;
}

}  // namespace teskcore::serialization
