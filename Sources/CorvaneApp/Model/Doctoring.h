// What a doctor has to look at, in terms of the model's services.
#pragma once

#include "CorvaneApp/Model/AppServices.h"
#include "CorvaneCore/Services/Doctor.h"

namespace corvane {

[[nodiscard]] DoctorOrders doctorOrders(const AppServices& services, const QString& dataDirectory);

} // namespace corvane
