include $(sort $(wildcard $(BR2_EXTERNAL_QORUTILS_PATH)/package/*/*.mk))
