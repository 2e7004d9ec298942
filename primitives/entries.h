// The one list of primitive entries: the slots, the dispatch table and its tests all expand it.
#pragma once

// clang-format off
#define ORVANE_PRIMITIVE_ENTRIES(X) \
    X(primMalloc) X(primFree) X(primFreeImage) \
    X(primAlloc_8u_C1) X(primAlloc_8u_C3) X(primAlloc_16s_C1) X(primAlloc_16s_C3) \
    X(primAlloc_16u_C1) X(primAlloc_16u_C3) X(primAlloc_32f_C1) X(primAlloc_32f_C3) X(primAlloc_32fc_C1) \
    X(primSet_8u_C1) X(primSet_8u_C3) X(primSet_16s_C1) X(primSet_32f_C1) \
    X(primCopy_8u_C1) X(primCopy_8u_C3) X(primCopy_16u_C1) X(primCopy_32f_C1) \
    X(primSqrIntegral_8u32f64f_C1) X(primRectStdDev_32f_C1) \
    X(primHaarClassifierInitAlloc_32f) X(primApplyHaarClassifier_32f_C1) \
    X(primGetHaarClassifierSize_32f) X(primHaarClassifierFree_32f) \
    X(primResize_8u_C1) X(primResize_8u_C3) \
    X(primRotate_8u_C1) X(primRotate_8u_C3) X(primRotateCenter_8u_C1) X(primRotateCenter_8u_C3) \
    X(primGetRotateShift) X(primGetRotateQuad) X(primGetRotateBound) \
    X(primCopyConstBorder_8u_C1) X(primCopyConstBorder_16s_C1) \
    X(primSetMasked_8u_C1) X(primCopyMasked_8u_C3) X(primCopy_8u_C3P3) X(primSwapChannels_8u_C3) \
    X(primAnd_8u_C1I) X(primThresholdLTValGTVal_8u_C1) X(primThresholdVal_8u_C1I) X(primCompareC_8u_C1) \
    X(primConvert_8u32f_C3) X(primConvert_32f8u_C3) X(primMulC_32f_C3I) X(primSubC_8u_C3ISfs) \
    X(primRGBToGray_8u_C3C1) X(primRGBToHSV_8u_C3) \
    X(primCountInRange_8u_C3) X(primHistogramEven_8u_C1) \
    X(primFilterSobelHorizBorder_8u16s_C1) X(primFilterSobelNegVertBorder_8u16s_C1) \
    X(primFilterScharrHorizBorder_8u16s_C1) X(primFilterScharrVertBorder_8u16s_C1) \
    X(primFilterSobelHorizGetBufferSize) X(primFilterSobelNegVertGetBufferSize) \
    X(primFilterScharrHorizGetBufferSize) X(primFilterScharrVertGetBufferSize) \
    X(primCanny_16s8u_C1) X(primCannyGetBufferSize) \
    X(primErode3x3_8u_C1I) X(primErode_8u_C1I) X(primFilterBox_8u_C1I) \
    X(primFloodFill4_8u_C1I) X(primFloodFill8_8u_C1I) X(primFloodFillGetSize)
// clang-format on
