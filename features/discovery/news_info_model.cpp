#include "features/discovery/news_info_model.h"

#include "core/common/dictionary.h"

namespace qmv {

NewsInfoModel::NewsInfoModel(const Json& dic)
    : BaseModel(dic),
      title(strForKey(dic, "contact")),
      time(strForKey(dic, "time")),
      content(strForKey(dic, "content")),
      isRead(strForKey(dic, "isRead")) {}

}  // namespace qmv
