// Prints what .NET makes of the interop source: each member with its slot, DISPID and marshalling, and each class.
//
//   PrintInterop Interop.dll
//
// A member is a row "interface | slot | DISPID | kind | name | parameters", with the result as last parameter.
using System;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;

static class PrintInterop
{
    static void Main(string[] arguments)
    {
        foreach (Type type in Assembly.LoadFrom(arguments[0]).GetTypes().Where(each => each.IsImport))
        {
            CoClassAttribute coClass = Attribute<CoClassAttribute>(type);
            if (coClass != null)
                Console.WriteLine("class {0} {1:B} {2} {3:B}", type.Name, coClass.CoClass.GUID, type.GetInterfaces().Single().Name,
                                  type.GUID);
            else if (type.IsInterface)
                PrintInterface(type);
        }
    }

    static void PrintInterface(Type type)
    {
        Console.WriteLine("interface {0} {1:B} {2}", type.Name, type.GUID,
                          Attribute<InterfaceTypeAttribute>(type).Value);
        foreach (MethodInfo method in type.GetMethods().OrderBy(each => each.MetadataToken))
            Console.WriteLine("{0} | {1} | {2} | {3} | {4}", type.Name, Marshal.GetComSlotForMethodInfo(method),
                              Attribute<DispIdAttribute>(method).Value, KindAndName(type, method), Parameters(method));
        foreach (PropertyInfo property in type.GetProperties())
            if (property.GetAccessors().Any(each => Attribute<DispIdAttribute>(each).Value
                                                    != Attribute<DispIdAttribute>(property).Value))
                Console.WriteLine("{0}.{1}: the accessors have another DISPID", type.Name, property.Name);
    }

    static string KindAndName(Type type, MethodInfo method)
    {
        PropertyInfo property = type.GetProperties().SingleOrDefault(each => each.GetAccessors().Contains(method));
        if (property == null)
            return "method | " + method.Name;
        return (method == property.GetGetMethod() ? "get | " : "put | ") + property.Name;
    }

    static string Parameters(MethodInfo method)
    {
        var parameters = method.GetParameters().Select(each =>
            each.IsOut ? "[out] " + TypeName(each) + "* " + each.Name
            : "[in] " + TypeName(each) + (method.IsSpecialName ? "" : " " + each.Name)).ToList();
        if (method.ReturnType != typeof(void))
            parameters.Add("[out,retval] " + TypeName(method.ReturnParameter) + "*");
        return parameters.Count == 0 ? "(none)" : string.Join("; ", parameters);
    }

    // The unmanaged type.
    static string TypeName(ParameterInfo parameter)
    {
        Type type = parameter.ParameterType.IsByRef ? parameter.ParameterType.GetElementType() : parameter.ParameterType;
        MarshalAsAttribute marshalAs = (MarshalAsAttribute)parameter.GetCustomAttributes(typeof(MarshalAsAttribute), false)
            .SingleOrDefault();
        if (marshalAs == null)
            return type == typeof(int) ? "LONG" : type == typeof(DateTime) ? "DATE" : "unmarshalled " + type.Name;
        switch (marshalAs.Value)
        {
            case UnmanagedType.BStr: return type == typeof(string) ? "BSTR" : "BSTR of " + type.Name;
            case UnmanagedType.VariantBool: return type == typeof(bool) ? "VARIANT_BOOL" : "flag of " + type.Name;
            case UnmanagedType.Interface: return type.Name + "*";
            default: return marshalAs.Value.ToString();
        }
    }

    static T Attribute<T>(MemberInfo member) where T : class
    {
        return (T)(object)member.GetCustomAttributes(typeof(T), false).SingleOrDefault();
    }
}
