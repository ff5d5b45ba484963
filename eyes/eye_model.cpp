#include "eyes/eye_model.h"

#include <cstring>
#include <memory>

#include "api/vizl_api.h"
#include "eyes/TEyeHMaxFeatures.h"

TEyeHMaxFeatures* eyeHMaxPrototype = nullptr;
eyeFeature eyeModel;
unsigned char eyeModel2[kEyeModel2Size];

int InitEyes() {
  auto prototype = std::make_unique<TEyeHMaxFeatures>();
  prototype->CreateS1Filters();
  delete eyeHMaxPrototype;
  eyeHMaxPrototype = prototype.release();
  std::memcpy(&eyeModel, VIZL_resData("EYESVM") + kEyeModelHeader, sizeof eyeModel);
  std::memcpy(eyeModel2, VIZL_resData("EYESVM2") + kEyeModelHeader, sizeof eyeModel2);
  return 0;
}

int FinalizeEyes() {
  delete eyeHMaxPrototype;
  eyeHMaxPrototype = nullptr;
  return 0;
}
