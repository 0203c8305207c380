# The library's own files, by name. What differs by platform has a suffix and is chosen here.

if(APPLE)
  set(SENMARK_PLATFORM mac)
else()
  set(SENMARK_PLATFORM linux)
endif()
# What there is for each platform; the names go on with a suffix like _linux.cpp.
set(SENMARK_PLATFORM_FILES plugin/source/SK_OSUtils source/SK_Assert source/SK_NumberText source/SK_OSFile
                           source/SK_OSMemory)
set(SENMARK_PLATFORM_SOURCES ${SENMARK_PLATFORM_FILES})
list(TRANSFORM SENMARK_PLATFORM_SOURCES APPEND _${SENMARK_PLATFORM}.cpp)

# The white space filter for this processor. Those that need more than every x86-64 has are each compiled for
# what they need and hold nothing else, and run only where the processor has it.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
  set(SENMARK_PROCESSOR_SOURCES source/SK_NumberRun_x86.cpp source/SK_WhiteSpaceFilter_avx2.cpp source/SK_WhiteSpaceFilter_avx512.cpp
                                source/SK_WhiteSpaceFilter_x86.cpp)
  set_source_files_properties(source/SK_WhiteSpaceFilter_avx2.cpp
                              PROPERTIES COMPILE_OPTIONS -mavx2 SKIP_PRECOMPILE_HEADERS ON)
  set_source_files_properties(source/SK_WhiteSpaceFilter_avx512.cpp
                              PROPERTIES COMPILE_OPTIONS "-mavx512bw;-mavx512vbmi2" SKIP_PRECOMPILE_HEADERS ON)
else()
  set(SENMARK_PROCESSOR_SOURCES source/SK_NumberRun_generic.cpp source/SK_WhiteSpaceFilter_generic.cpp)
endif()

set(SENMARK_SOURCES
    plugin/source/CheckFormat.cpp
    plugin/source/ResourceParser.cpp
    plugin/source/SK_ConverterHandler.cpp
    plugin/source/SK_ConverterHandlerInstance.cpp
    plugin/source/SK_FileIO-POSIX.cpp
    plugin/source/SK_HostAPIImpl.cpp
    plugin/source/SK_Module.cpp
    plugin/source/SK_ModuleCall.cpp
    plugin/source/SK_OSUtils-POSIX.cpp
    plugin/source/SK_PluginManager.cpp
    plugin/source/Writer_Wrapper.cpp
    plugin/source/tdjsonWriter/ITdjsonDynamicData_I.cpp
    plugin/source/tdjsonWriter/ITdjsonRoot_I.cpp
    plugin/source/tdjsonWriter/SK_DumpSamplesUtils.cpp
    plugin/source/tdjsonWriter/SK_NodePool.cpp
    plugin/source/tdjsonWriter/SK_NumberAnalysis.cpp
    plugin/source/tdjsonWriter/SK_NumberPropertyRules.cpp
    plugin/source/tdjsonWriter/SK_PackedNumber.cpp
    plugin/source/tdjsonWriter/SK_SampleTimeText.cpp
    plugin/source/tdjsonWriter/SK_StaticRecords.cpp
    plugin/source/tdjsonWriter/SK_TimeWindow.cpp
    plugin/source/tdjsonWriter/SK_WriterFailure.cpp
    plugin/source/tdjsonWriter/SK_WriterNumberText.cpp
    plugin/source/tdjsonWriter/Serializer.cpp
    plugin/source/tdjsonWriter/SerializerArraySample.cpp
    plugin/source/tdjsonWriter/SerializerBuffer.cpp
    plugin/source/tdjsonWriter/SerializerFile.cpp
    plugin/source/tdjsonWriter/SerializerOutline.cpp
    plugin/source/tdjsonWriter/SerializerSample.cpp
    plugin/source/tdjsonWriter/SerializerText.cpp
    plugin/source/tdjsonWriter/SerializerTextSample.cpp
    plugin/source/tdjsonWriter/SharedObjectImpl.cpp
    plugin/source/tdjsonWriter/TdjsonDynamicDataImpl.cpp
    plugin/source/tdjsonWriter/TdjsonDynamicDataNumArrImpl.cpp
    plugin/source/tdjsonWriter/TdjsonDynamicDataNumImpl.cpp
    plugin/source/tdjsonWriter/TdjsonDynamicDataStringImpl.cpp
    plugin/source/tdjsonWriter/TdjsonGroupImpl.cpp
    plugin/source/tdjsonWriter/TdjsonRootImpl.cpp
    plugin/source/tdjsonWriter/TdjsonStaticDataBoolImpl.cpp
    plugin/source/tdjsonWriter/TdjsonStaticDataImpl.cpp
    plugin/source/tdjsonWriter/TdjsonStaticDataNumArrImpl.cpp
    plugin/source/tdjsonWriter/TdjsonStaticDataNumImpl.cpp
    plugin/source/tdjsonWriter/TdjsonStaticDataStringImpl.cpp
    source/ISenmark.cpp
    source/ISenmark_I.cpp
    source/ISensorFileHandler_I.cpp
    source/ITdjsonStream_I.cpp
    source/NativeConverters/BVH/BVHConverter.cpp
    source/NativeConverters/BVH/BVHFrameRate.cpp
    source/NativeConverters/BVH/BVHInput.cpp
    source/NativeConverters/BVH/BVHLine.cpp
    source/NativeConverters/BVH/BVHParser.cpp
    source/NativeConverters/BVH/EulerAngles.cpp
    source/NativeConverters/BVH/SkeletonNode.cpp
    source/NativeConverters/BVH/eEulerOrder.cpp
    source/NativeConverters/JSON/JsonArrayIterator.cpp
    source/NativeConverters/JSON/JsonConverter.cpp
    source/NativeConverters/JSON/JsonObjectIterator.cpp
    source/NativeConverters/JSON/JsonParser.cpp
    source/NativeConverters/JSON/JsonValueAccess.cpp
    source/NativeConverters/SK_InputBytes.cpp
    source/NativeConverters/SK_LongNames.cpp
    source/NativeConverters/SV/CSVConverter.cpp
    source/NativeConverters/SV/SVCells.cpp
    source/NativeConverters/SV/SVEncoding.cpp
    source/NativeConverters/SV/SVFields.cpp
    source/NativeConverters/SV/SVLine.cpp
    source/NativeConverters/SV/SVSupport.cpp
    source/NativeConverters/SV/SVUnitInput.cpp
    source/NativeConverters/SV/TSVConverter.cpp
    source/SK_BytePieces.cpp
    source/SK_ClientTable.cpp
    source/SK_ConversionInfo.cpp
    source/SK_ConverterManager.cpp
    source/SK_ConverterRegistry.cpp
    source/SK_DataQuery.cpp
    source/SK_Error.cpp
    source/SK_Exception.cpp
    source/SK_FileLimit-POSIX.cpp
    source/SK_FileMapper-POSIX.cpp
    source/SK_HostAPI.cpp
    source/SK_JsonBytes.cpp
    source/SK_JsonError.cpp
    source/SK_JsonName.cpp
    source/SK_JsonNumber.cpp
    source/SK_JsonPool.cpp
    source/SK_JsonText.cpp
    source/SK_Ladder.cpp
    source/SK_Localizer.cpp
    source/SK_MatchNames.cpp
    source/SK_Mutex.cpp
    source/SK_NumberLayout.cpp
    source/SK_NumberRun.cpp
    source/SK_NumberText.cpp
    source/SK_OSMemory-POSIX.cpp
    source/SK_OutlinePath.cpp
    source/SK_OutlineReader.cpp
    source/SK_PackedDataType.cpp
    source/SK_RapidJson.cpp
    source/SK_RecordReset.cpp
    source/SK_RelativeTimeReader.cpp
    source/SK_SampleBlock.cpp
    source/SK_SampleDataProcessor.cpp
    source/SK_SampleDecoder.cpp
    source/SK_SampleJsonReader.cpp
    source/SK_SampleOffsets.cpp
    source/SK_SampleSearch.cpp
    source/SK_SampleSectionCopy.cpp
    source/SK_SampleSet.cpp
    source/SK_SampleSizeEstimator.cpp
    source/SK_TdjsonParser.cpp
    source/SK_TdjsonParserFactory.cpp
    source/SK_TdjsonParserUtils.cpp
    source/SK_TdjsonParser_v1.cpp
    source/SK_TdjsonParser_v2.cpp
    source/SK_TdjsonValidator.cpp
    source/SK_TdjsonValidator_v1.cpp
    source/SK_TdjsonValidator_v2.cpp
    source/SK_TempFileHandler-POSIX.cpp
    source/SK_TimeFormat.cpp
    source/SK_TimeRatio.cpp
    source/SK_TimeTarget.cpp
    source/SK_TimeText.cpp
    source/SK_TimeUtils.cpp
    source/SK_TimeUtilsText.cpp
    source/SK_UnicodeConversion.cpp
    source/SK_UnicodeUtils.cpp
    source/SK_Utils.cpp
    source/SK_UtilsTime.cpp
    source/SK_WhiteSpaceFilter.cpp
    source/SenmarkExports.cpp
    source/SenmarkImpl.cpp
    source/SensorFileHandlerImpl.cpp
    source/TdjsonStreamImpl.cpp
    ${SENMARK_PLATFORM_SOURCES}
    ${SENMARK_PROCESSOR_SOURCES})
