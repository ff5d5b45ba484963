#include "eyes/eye_model.h"

#include <cstring>
#include <memory>
#include <utility>

#include "api/vizl_api.h"
#include "eyes/TEyeHMaxFeatures.h"
#include "eyes/eye_score.h"

TEyeHMaxFeatures* eyeHMaxPrototype = nullptr;
TEyeRows* eyeRows = nullptr;
unsigned char eyeModel2[kEyeModel2Size];

void UseEyeModel(const eyeFeature& model) {
  delete std::exchange(eyeRows, std::make_unique<TEyeRows>(model).release());
}

int InitEyes() {
  auto prototype = std::make_unique<TEyeHMaxFeatures>();
  prototype->CreateS1Filters();
  const auto model = std::make_unique<eyeFeature>();
  std::memcpy(model.get(), VIZL_resData("EYESVM") + kEyeModelHeader, sizeof *model);
  UseEyeModel(*model);
  delete std::exchange(eyeHMaxPrototype, prototype.release());
  std::memcpy(eyeModel2, VIZL_resData("EYESVM2") + kEyeModelHeader, sizeof eyeModel2);
  return 0;
}

int FinalizeEyes() {
  delete std::exchange(eyeHMaxPrototype, nullptr);
  delete std::exchange(eyeRows, nullptr);
  return 0;
}
