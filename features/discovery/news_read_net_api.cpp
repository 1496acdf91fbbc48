#include "features/discovery/news_read_net_api.h"

#include "core/common/dictionary.h"

namespace qmv {

Json NewsReadNetApi::requestArgument() const { return getBaseArgument(); }

}  // namespace qmv
