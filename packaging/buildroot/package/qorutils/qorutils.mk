################################################################################
#
# qorutils
#
################################################################################

QORUTILS_VERSION = $(call qstrip,$(BR2_PACKAGE_QORUTILS_REVISION))
QORUTILS_SITE = $(call qstrip,$(BR2_PACKAGE_QORUTILS_GIT))
QORUTILS_SITE_METHOD = git
# Which commit is built is the user's choice: a list of hashes cannot know it.
BR_NO_CHECK_HASH_FOR += $(QORUTILS_SOURCE)
# The owners have not chosen a licence yet.
QORUTILS_REDISTRIBUTE = NO
QORUTILS_INSTALL_STAGING = YES
QORUTILS_DEPENDENCIES = boost

# A public header carries struct stat as it is without _FILE_OFFSET_BITS on
# 32-bit machines, and refuses the definition.
QORUTILS_CONF_OPTS = \
	-DCMAKE_CXX_FLAGS="$(TARGET_CXXFLAGS) -U_FILE_OFFSET_BITS" \
	-DQORUTILS_BUILD_TESTS=OFF \
	-DQORUTILS_BUILD_EXAMPLES=OFF

ifeq ($(BR2_PACKAGE_QORUTILS_TOOLS),y)
QORUTILS_CONF_OPTS += -DQORUTILS_BUILD_TOOLS=ON
else
QORUTILS_CONF_OPTS += -DQORUTILS_BUILD_TOOLS=OFF
endif

ifeq ($(BR2_PACKAGE_QORUTILS)$(BR_BUILDING),yy)
ifeq ($(QORUTILS_OVERRIDE_SRCDIR),)
ifeq ($(QORUTILS_SITE),)
$(error BR2_PACKAGE_QORUTILS_GIT is not set)
endif
ifeq ($(QORUTILS_VERSION),)
$(error BR2_PACKAGE_QORUTILS_REVISION is not set)
endif
endif
endif

$(eval $(cmake-package))
