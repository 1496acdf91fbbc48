#include "features/discovery/my_grade_view_controller.h"

#include "features/discovery/store_info_model.h"
#include "features/discovery/store_screens.h"

namespace qmv {

bool MyGradeViewController::openRow(std::size_t row) {
  if (row >= rows().size() || !leadsToStore(rows()[row])) return false;
  const GradeModel& grade = rows()[row];
  openStoreDetail(StoreInfoModel(Json{{"storeId", grade.storeId}, {"storeName", grade.storeName}}));
  return true;
}

}  // namespace qmv
