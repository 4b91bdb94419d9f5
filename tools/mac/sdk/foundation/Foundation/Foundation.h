// What the module uses of Foundation.
#pragma once

#include <objc/NSObject.h>
#include <stdint.h>

typedef double NSTimeInterval;

#ifdef __cplusplus
#define FOUNDATION_EXPORT extern "C"
#else
#define FOUNDATION_EXPORT extern
#endif

@interface NSString : NSObject
- (const char*)UTF8String;
@end

@interface NSArray : NSObject
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
@end

@interface NSMutableArray : NSArray
+ (id)arrayWithCapacity:(NSUInteger)capacity;
- (void)addObject:(id)object;
@end

@interface NSDictionary : NSObject
+ (id)dictionary;
- (id)objectForKey:(id)key;
@end

@interface NSMutableDictionary : NSDictionary
- (void)setObject:(id)object forKey:(id)key;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
@end

@interface NSNotification : NSObject
@end

FOUNDATION_EXPORT void NSLog(NSString* format, ...);
