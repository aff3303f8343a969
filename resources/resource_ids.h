// Numbers of the library's resources.
#pragma once
